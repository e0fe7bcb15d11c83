#include "API/Limits.h"
#include "API/Route.h"
#include "API/Stored.h"

namespace stillgate::server
{

std::vector<BlockRule> blockRulesOf(Database& database, const std::string& userId)
{
    return database.all<BlockRule>("SELECT * FROM block_rules WHERE user_id = ? ORDER BY created_at, id", userId);
}

namespace
{

Response list(Call& call)
{
    return jsonAnswer(blockRulesOf(call.database, call.account.userId));
}

/// The user's own rules and their guardians', as far as they are in force.
Response effective(Call& call)
{
    const auto& userId = call.account.userId;
    EffectiveRulesResponse answer;
    answer.rules = call.database.all<EffectiveRule>(
        "SELECT block_rules.*, 'own' AS _source FROM block_rules WHERE user_id = ? AND enabled = 1 "
        "ORDER BY created_at, id",
        userId);
    const auto guardianRules = call.database.all<EffectiveRule>(
        "SELECT guardian_rules.*, connections.controlled_user_id AS user_id, 'guardian' AS _source, "
        "connections.id AS _connection_id FROM guardian_rules "
        "JOIN connections ON connections.id = guardian_rules.connection_id "
        "WHERE connections.controlled_user_id = ? AND guardian_rules.enabled = 1 "
        "ORDER BY guardian_rules.created_at, guardian_rules.id",
        userId);
    answer.rules.insert(answer.rules.end(), guardianRules.begin(), guardianRules.end());
    answer.guardianConnections = call.database.all<GuardianConnectionInfo>(
        "SELECT * FROM connections WHERE controlled_user_id = ? ORDER BY created_at, id", userId);
    return jsonAnswer(answer);
}

Response create(Call& call)
{
    auto rule = call.body<BlockRule>();
    requireText(rule.category, longestName, "category");
    requireText(rule.customName, longestName, "customName");
    requireText(rule.unblockPolicy, longestName, "unblockPolicy");
    requireTexts(rule.customDomains, mostDomains, "customDomains");
    requireTexts(rule.excludedDomains, mostDomains, "excludedDomains");
    requireApps(rule.customApps);
    requireRoom(call.database, "block_rules", "user_id", call.account.userId);
    rule.id = idFor(call.database, "block_rules", rule.id);
    call.database.execute(
        "INSERT INTO block_rules (id, user_id, category, custom_name, enabled, custom_domains, excluded_domains, "
        "custom_apps, unblock_policy, cooldown_hours, created_at, updated_at) "
        "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
        rule.id, call.account.userId, rule.category, rule.customName, rule.enabled, rule.customDomains,
        rule.excludedDomains, rule.customApps, rule.unblockPolicy, rule.cooldownHours, call.now, call.now);
    return jsonAnswer(call.database.first<BlockRule>("SELECT * FROM block_rules WHERE id = ?", rule.id).value(), 201);
}

Response remove(Call& call)
{
    const auto removed = call.database.execute(
        "DELETE FROM block_rules WHERE id = ? AND user_id = ?", call.argument("id"), call.account.userId);
    if (removed == 0)
        throw notFound();
    return acknowledgement();
}

} // namespace

Routes blockRuleRoutes()
{
    return {
        {"GET", "/block-rules", list},
        {"GET", "/block-rules/effective", effective},
        {"POST", "/block-rules", create},
        {"DELETE", "/block-rules/{id}", remove},
    };
}

} // namespace stillgate::server
