#pragma once

#include "Backend/KeychainService.h"
#include "Backend/SecretBytes.h"

#include <cstdint>
#include <optional>

namespace stillgate
{

/// The pair of opaque tokens that a session consists of: in memory while the program runs, in the token store
/// between runs.
class SessionTokens
{
public:
    explicit SessionTokens(KeychainService& store);

    /// The only way in for a new pair.
    void set(std::string_view access, std::string_view refresh);

    /// From the store; a token that isn't there leaves the one in memory as it is.
    void load();

    /// Wipes memory and store: the end of a session.
    void clear();

    /// How many sessions have ended. What was begun in an earlier one has no say in a later one.
    [[nodiscard]] std::uint64_t endedSessions() const { return m_endedSessions; }

    /// Valid until the next change.
    [[nodiscard]] std::optional<std::string_view> access() const;
    [[nodiscard]] std::optional<std::string_view> refresh() const;

private:
    void zeroize();

    KeychainService& m_store;
    std::optional<SecretBytes> m_access;
    std::optional<SecretBytes> m_refresh;
    std::uint64_t m_endedSessions = 0;
};

} // namespace stillgate
