#pragma once

#include "Database/Database.h"

#include <string>
#include <vector>

namespace stillgate::server
{

/// Tries that can be wrong: of a password, of a code. Each counts against whom it concerns, such as an account and an
/// address, from before it is known to be wrong: a hundred at once find the same five places.
class Attempts
{
public:
    Attempts(Database& database, std::string purpose, int limit = 5)
        : m_database(database)
        , m_purpose(std::move(purpose))
        , m_limit(limit)
    {}

    /// Gives the try's id, or nothing if one of the subjects has had its tries of the last 15 minutes.
    /// Within a transaction.
    [[nodiscard]] std::optional<std::string> take(const std::vector<std::string>& subjects, Date now);

    /// The try was right after all, and doesn't count.
    void giveBack(const std::string& id);

    static constexpr std::chrono::minutes period{15};

private:
    Database& m_database;
    std::string m_purpose;
    int m_limit;
};

} // namespace stillgate::server
