#pragma once

#include "API/Route.h"

#include <map>
#include <string>
#include <vector>

namespace stillgate::server
{

// THREAT: everybody can have an account. What one account stores costs memory each time that it, or its guardian, asks
// for it. So every text, list and number of rows has its bound, far above what anybody needs.

constexpr std::size_t longestName = 200;        ///< bytes, as all of these
constexpr std::size_t longestText = 5000;       ///< of a description or a message
constexpr std::size_t mostDomains = 10'000;     ///< of one rule
constexpr std::size_t mostApps = 1000;          ///< of one rule or one day
constexpr std::int64_t mostRows = 500;          ///< of one kind and one owner
constexpr std::int64_t mostCounted = 1'000'000; ///< of pick-ups and the like

/// Throws a 400 with the field's name for a text that is too long.
inline void requireText(const std::optional<std::string>& text, std::size_t most, const std::string& field)
{
    if (text && text->size() > most)
        throw Refusal{400, field + ": " + std::to_string(most) + " bytes at most"};
}

inline void requireTexts(const std::vector<std::string>& texts, std::size_t most, const std::string& field)
{
    if (texts.size() > most)
        throw Refusal{400, field + ": " + std::to_string(most) + " at most"};
    for (const auto& text : texts)
        requireText(text, longestName, field);
}

/// A count or a number of minutes of what has been: 0 to `most`.
inline void requireCount(const std::optional<std::int64_t>& count, std::int64_t most, const std::string& field)
{
    if (count && (*count < 0 || *count > most))
        throw Refusal{400, field + ": 0 to " + std::to_string(most)};
}

/// The apps of a rule, by platform.
void requireApps(const std::optional<std::map<std::string, std::vector<AppInfo>>>& apps);

/// Throws a 409 if the owner has as many rows as anybody may have. `table` and `owner`, a column, are our own words.
void requireRoom(Database& database, const std::string& table, const std::string& owner, const std::string& id);

} // namespace stillgate::server
