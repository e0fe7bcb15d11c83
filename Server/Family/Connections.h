#pragma once

#include "Database/Database.h"
#include "Models/BlockRules.h"
#include "Models/Sharing.h"

#include <string>
#include <vector>

namespace stillgate::server
{

/// The connections of a user, on both sides, as that user sees them.
[[nodiscard]] std::vector<SharingConnection> connectionsOf(Database& database, const std::string& userId);

/// One of them; nothing for a stranger's.
[[nodiscard]] std::optional<SharingConnection> connectionOf(
    Database& database, const std::string& userId, const std::string& connectionId);

/// The same, for its guardian alone. Throws a 404 for everybody else.
[[nodiscard]] SharingConnection guardedConnection(
    Database& database, const std::string& guardianId, const std::string& connectionId);

[[nodiscard]] bool isGuardianOf(Database& database, const std::string& guardianId, const std::string& userId);
[[nodiscard]] bool isHeldPermanently(Database& database, const std::string& userId);

/// The user, and everybody linked with them: the group "default". `role` is "member" for the user, else "guardian" or
/// "controlled"; whoever is both is the guardian.
struct GroupMember
{
    std::string userId;
    std::string displayName;
    std::string timeZone;
    std::string role;

    STILLGATE_RECORD(GroupMember, userId, displayName, timeZone, role);
};

[[nodiscard]] std::vector<GroupMember> groupOf(Database& database, const std::string& userId);

/// The rules of a connection.
[[nodiscard]] std::vector<GuardianBlockRule> guardianRulesOf(Database& database, const std::string& connectionId);

/// Makes the one who has the code the guardian of its owner.
enum class LinkFault { unknownCode, ownCode };
[[nodiscard]] std::expected<SharingConnection, LinkFault> linkWithCode(
    Database& database, const std::string& guardianId, const std::string& typedText, Date now);

} // namespace stillgate::server
