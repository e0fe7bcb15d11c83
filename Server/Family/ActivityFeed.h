#pragma once

#include "Database/Database.h"
#include "Models/Sharing.h"
#include "Texts/Texts.h"

#include <map>
#include <string>
#include <vector>

namespace stillgate::server
{

/// What happened in a connection, for its guardian to read. An event is stored as its kind and its details; the line
/// that tells it is made when it is read, in the reader's language.
class ActivityFeed
{
public:
    using Details = std::map<std::string, std::string>;

    explicit ActivityFeed(Database& database)
        : m_database(database)
    {}

    void add(const std::string& connectionId, const std::string& actorId, const std::string& eventType,
        const Details& details, Date now);

    /// Adds to the feeds of all guardians of the user.
    void addForGuardians(const std::string& userId, const std::string& actorId, const std::string& eventType,
        const Details& details, Date now);

    /// The newest first, 200 at most.
    [[nodiscard]] std::vector<GuardianActivityEvent> since(
        const std::string& connectionId, Date start, const Texts& texts, const std::string& language);

private:
    Database& m_database;
};

} // namespace stillgate::server
