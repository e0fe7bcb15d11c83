#include "API/Limits.h"
#include "API/Route.h"
#include "API/Tasks.h"
#include "Accounts/Secrets.h"
#include "Family/ActivityFeed.h"
#include "Family/Connections.h"
#include "Family/Days.h"
#include "Family/Streaks.h"

#include <QString>

#include <charconv>

namespace stillgate::server
{

namespace
{

/// How the feed calls a rule: by its name, else by its category.
ActivityFeed::Details detailsOf(const std::optional<std::string>& name, const std::optional<std::string>& category)
{
    if (name && !name->empty())
        return {{"rule", *name}};
    return {{"category", category.value_or("custom")}};
}

GuardianBlockRule ruleOf(Call& call, const std::string& ruleId)
{
    auto rule = call.database.first<GuardianBlockRule>(
        "SELECT guardian_rules.*, connections.controller_user_id, connections.controlled_user_id FROM guardian_rules "
        "JOIN connections ON connections.id = guardian_rules.connection_id "
        "WHERE guardian_rules.id = ? AND connections.controller_user_id = ?",
        ruleId, call.account.userId);
    if (!rule)
        throw notFound();
    return *rule;
}

Response createRule(Call& call)
{
    const auto body = call.body<CreateGuardianRuleBody>();
    requireText(body.category, longestName, "category");
    requireText(body.customName, longestName, "customName");
    requireTexts(body.customDomains, mostDomains, "customDomains");
    requireApps(body.customApps);
    const auto connection = guardedConnection(call.database, call.account.userId, call.argument("id"));
    requireRoom(call.database, "guardian_rules", "connection_id", connection.id);
    const auto id = newId();
    call.database.execute(
        "INSERT INTO guardian_rules (id, connection_id, category, custom_name, enabled, custom_domains, custom_apps, "
        "created_at, updated_at) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)",
        id, connection.id, body.category, body.customName, body.enabled, body.customDomains, body.customApps, call.now,
        call.now);
    ActivityFeed{call.database}.add(
        connection.id, call.account.userId, "rule_added", detailsOf(body.customName, body.category), call.now);
    return jsonAnswer(ruleOf(call, id), 201);
}

Response updateRule(Call& call)
{
    const auto body = call.body<UpdateGuardianRuleBody>();
    requireText(body.customName, longestName, "customName");
    requireTexts(body.customDomains.value_or(std::vector<std::string>{}), mostDomains, "customDomains");
    requireApps(body.customApps);
    const auto before = ruleOf(call, call.argument("id"));
    call.database.execute(
        "UPDATE guardian_rules SET enabled = ?, custom_domains = ?, custom_apps = ?, custom_name = ?, updated_at = ? "
        "WHERE id = ?",
        body.enabled.value_or(before.enabled), body.customDomains ? body.customDomains : before.customDomains,
        body.customApps ? body.customApps : before.customApps, body.customName ? body.customName : before.customName,
        call.now, before.id);
    const auto after = ruleOf(call, before.id);
    if (after.enabled != before.enabled) {
        auto details = detailsOf(after.customName, after.category);
        details["enabled"] = after.enabled ? "true" : "false";
        ActivityFeed{call.database}.add(after.connectionId, call.account.userId, "rule_toggled", details, call.now);
    }
    return jsonAnswer(after);
}

Response deleteRule(Call& call)
{
    const auto rule = ruleOf(call, call.argument("id"));
    call.database.execute("DELETE FROM guardian_rules WHERE id = ?", rule.id);
    ActivityFeed{call.database}.add(
        rule.connectionId, call.account.userId, "rule_removed", detailsOf(rule.customName, rule.category), call.now);
    return acknowledgement();
}

bool isIllustration(Database& database, const std::string& key)
{
    return database.number("SELECT COUNT(*) FROM illustrations WHERE key = ?", key) > 0;
}

/// What is none stays as it is; an empty message or illustration goes back to the automatic one.
Response updateSettings(Call& call)
{
    const auto settings = call.body<GuardianConnectionSettings>();
    requireText(settings.customBlockMessage, longestText, "customBlockMessage");
    const auto before = guardedConnection(call.database, call.account.userId, call.argument("id"));
    const auto mode = settings.flexibilityMode ? settings.flexibilityMode : before.flexibilityMode;
    require(mode == "flexible" || mode == "permanent", "flexibilityMode: flexible or permanent");
    auto message = settings.customBlockMessage ? settings.customBlockMessage : before.customBlockMessage;
    auto illustration = settings.blockIllustrationKey ? settings.blockIllustrationKey : before.blockIllustrationKey;
    if (message == "")
        message.reset();
    if (illustration == "")
        illustration.reset();
    require(!illustration || isIllustration(call.database, *illustration), "blockIllustrationKey: unknown");
    call.database.execute("UPDATE connections SET flexibility_mode = ?, custom_block_message = ?, "
                          "block_illustration_key = ? WHERE id = ?",
        mode, message, illustration, before.id);
    if (mode == "permanent") // nor by a code made before
        call.database.execute("DELETE FROM sharing_codes WHERE user_id = ?", before.controlledUserId);
    if (mode != before.flexibilityMode)
        ActivityFeed{call.database}.add(before.id, call.account.userId, "mode_changed", {{"mode", *mode}}, call.now);
    return jsonAnswer(guardedConnection(call.database, call.account.userId, before.id));
}

Response activity(Call& call)
{
    const auto connection = guardedConnection(call.database, call.account.userId, call.argument("id"));
    const auto text = call.query("days");
    int days = 7;
    if (!text.empty()) {
        const auto read = std::from_chars(text.data(), text.data() + text.size(), days);
        require(read.ec == std::errc{} && read.ptr == text.data() + text.size() && days >= 1 && days <= 90,
            "days: 1 to 90");
    }
    return jsonAnswer(ActivityFeed{call.database}.since(
        connection.id, call.now - std::chrono::days{days}, call.service.texts, call.account.language));
}

Response assignTask(Call& call)
{
    const auto connection = guardedConnection(call.database, call.account.userId, call.argument("id"));
    return createTask(call, connection.controlledUserId);
}

Response illustrations(Call& call)
{
    return jsonAnswer(call.database.all<IllustrationOption>(
        "SELECT * FROM illustrations WHERE language = ? ORDER BY position", call.account.language));
}

/// As much of a text as the feed shows, in whole characters.
std::string beginningOf(const std::string& text)
{
    constexpr qsizetype longest = 500;
    auto beginning = QString::fromStdString(text).left(longest);
    if (!beginning.isEmpty() && beginning.back().isHighSurrogate())
        beginning.chop(1);
    return beginning.toStdString();
}

/// A device tells that somebody got round a block, or tried to end the program. Who has no guardian still loses the
/// day for the streak.
Response reportTampering(Call& call)
{
    const auto report = call.body<TamperingBody>();
    const bool isBypass = report.eventType == "bypass_attempt";
    require(
        isBypass || report.eventType == "app_deletion_attempt", "eventType: bypass_attempt or app_deletion_attempt");
    const auto& userId = call.account.userId;
    if (isBypass)
        recordBypass(call.database, userId, dayOf(call.now, call.account.timeZone));
    ActivityFeed{call.database}.addForGuardians(userId, userId, isBypass ? "bypass_attempt" : "tampering_detected",
        {{"details", beginningOf(report.details.value_or(""))}}, call.now);
    return acknowledgement();
}

} // namespace

Routes guardianRoutes()
{
    return {
        {"POST", "/guardian/connections/{id}/rules", createRule},
        {"PUT", "/guardian/rules/{id}", updateRule},
        {"DELETE", "/guardian/rules/{id}", deleteRule},
        {"PUT", "/guardian/connections/{id}/settings", updateSettings},
        {"GET", "/guardian/connections/{id}/activity", activity},
        {"POST", "/guardian/connections/{id}/tasks", assignTask},
        {"GET", "/guardian/illustrations", illustrations},
        {"POST", "/guardian/tampering", reportTampering},
    };
}

} // namespace stillgate::server
