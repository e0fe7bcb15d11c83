#include "Family/Connections.h"

#include "Accounts/Secrets.h"
#include "HTTP/Message.h"

namespace stillgate::server
{

namespace
{

/// Takes the viewer twice, then what `condition` takes.
std::string selectConnections(const std::string& condition)
{
    return "SELECT connections.*, 1 AS is_active, controller.display_name AS controller_name, "
           "controlled.display_name AS controlled_name, "
           "CASE WHEN connections.controlled_user_id = ? THEN 'controlled' ELSE 'controller' END AS role "
           "FROM connections JOIN users AS controller ON controller.id = connections.controller_user_id "
           "JOIN users AS controlled ON controlled.id = connections.controlled_user_id "
           "WHERE ? IN (connections.controller_user_id, connections.controlled_user_id) " +
        condition + " ORDER BY connections.created_at, connections.id";
}

} // namespace

std::vector<SharingConnection> connectionsOf(Database& database, const std::string& userId)
{
    return database.all<SharingConnection>(selectConnections(""), userId, userId);
}

std::optional<SharingConnection> connectionOf(
    Database& database, const std::string& userId, const std::string& connectionId)
{
    return database.first<SharingConnection>(selectConnections("AND connections.id = ?"), userId, userId, connectionId);
}

SharingConnection guardedConnection(Database& database, const std::string& guardianId, const std::string& connectionId)
{
    auto connection = connectionOf(database, guardianId, connectionId);
    if (!connection || connection->controllerUserId != guardianId)
        throw notFound();
    return *connection;
}

bool isGuardianOf(Database& database, const std::string& guardianId, const std::string& userId)
{
    return database.number("SELECT COUNT(*) FROM connections WHERE controller_user_id = ? AND controlled_user_id = ?",
               guardianId, userId) > 0;
}

bool isHeldPermanently(Database& database, const std::string& userId)
{
    return database.number(
               "SELECT COUNT(*) FROM connections WHERE controlled_user_id = ? AND flexibility_mode = 'permanent'",
               userId) > 0;
}

std::vector<GroupMember> groupOf(Database& database, const std::string& userId)
{
    return database.all<GroupMember>(
        "SELECT users.id AS user_id, users.display_name, users.time_zone, CASE WHEN users.id = ? THEN 'member' "
        "WHEN EXISTS (SELECT 1 FROM connections WHERE controlled_user_id = ? AND controller_user_id = users.id) "
        "THEN 'guardian' ELSE 'controlled' END AS role FROM users WHERE users.id = ? "
        "OR users.id IN (SELECT controller_user_id FROM connections WHERE controlled_user_id = ?) "
        "OR users.id IN (SELECT controlled_user_id FROM connections WHERE controller_user_id = ?) "
        "ORDER BY CASE WHEN users.id = ? THEN 0 ELSE 1 END, users.display_name, users.id",
        userId, userId, userId, userId, userId, userId);
}

std::vector<GuardianBlockRule> guardianRulesOf(Database& database, const std::string& connectionId)
{
    return database.all<GuardianBlockRule>(
        "SELECT guardian_rules.*, connections.controller_user_id, connections.controlled_user_id FROM guardian_rules "
        "JOIN connections ON connections.id = guardian_rules.connection_id WHERE connections.id = ? "
        "ORDER BY guardian_rules.created_at, guardian_rules.id",
        connectionId);
}

std::expected<SharingConnection, LinkFault> linkWithCode(
    Database& database, const std::string& guardianId, const std::string& typedText, Date now)
{
    const auto code = typedCode(typedText);
    const auto owner =
        database.first<std::string>("SELECT user_id FROM sharing_codes WHERE code = ? AND expires_at > ?", code, now);
    if (!owner)
        return std::unexpected{LinkFault::unknownCode};
    if (*owner == guardianId)
        return std::unexpected{LinkFault::ownCode};
    database.execute("DELETE FROM sharing_codes WHERE code = ?", code);
    database.execute("INSERT INTO connections (id, controller_user_id, controlled_user_id, daily_limit_minutes, "
                     "flexibility_mode, created_at) VALUES (?, ?, ?, 0, 'flexible', ?) "
                     "ON CONFLICT (controller_user_id, controlled_user_id) DO NOTHING",
        newId(), guardianId, *owner, now);
    return database
        .first<SharingConnection>(
            selectConnections("AND connections.controlled_user_id = ?"), guardianId, guardianId, *owner)
        .value();
}

} // namespace stillgate::server
