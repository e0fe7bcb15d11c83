#include "Views/Protection/RuleRows.h"

#include "DesignSystem/Styles.h"
#include "DesignSystem/Tokens.h"
#include "Views/Common/TextOf.h"

#include <algorithm>

namespace stillgate
{

namespace
{

constexpr qsizetype mostEntries = 8;
constexpr auto customCategory = "custom";

const std::vector<AppInfo>& appsOf(const BlockRule& rule)
{
    static const std::vector<AppInfo> none;
    if (!rule.customApps)
        return none;
    const auto own = rule.customApps->find(ownPlatform);
    return own != rule.customApps->end() ? own->second : none;
}

QString symbolOf(const BlockRule& rule)
{
    if (rule.category != customCategory)
        return Styles::category(QString::fromStdString(rule.category.value_or(""))).symbol;
    const bool hasApps = !appsOf(rule).empty();
    if (hasApps == rule.customDomains.empty())
        return hasApps ? "app.fill" : "globe";
    return "lock.shield.fill";
}

QString subtitleOf(const BlockRule& rule)
{
    QStringList parts;
    if (const auto count = std::ssize(appsOf(rule)); count > 0)
        parts << counted(count, "desktop.quickBlock.apps");
    if (const auto count = std::ssize(rule.customDomains); count > 0)
        parts << counted(count, "desktop.quickBlock.websites");
    return parts.isEmpty() ? textOf("onboarding.categories.custom") : parts.join(" · ");
}

QString policyNameOf(const std::string& policy)
{
    static constexpr struct
    {
        std::string_view policy;
        const char* key;
    } names[] = {
        {"permanent", "desktop.createRule.permanentBlock"},
        {"cooldown", "desktop.createRule.cooldownPeriod"},
        {"timed", "desktop.createRule.timedBlock"},
        {"group_approval", "desktop.createRule.groupApproval"},
    };

    const auto* row = std::ranges::find(names, policy, [](const auto& each) { return each.policy; });
    return row != std::end(names) ? textOf(row->key) : QString::fromStdString(policy);
}

/// `nameOf` gives the text of an entry.
template <class Entries, class NameOf>
RuleSection section(const char* symbol, const char* titleKey, const Entries& entries, NameOf nameOf)
{
    const auto count = std::ssize(entries);
    RuleSection section{.symbol = symbol, .title = counted(count, titleKey)};
    for (const auto& entry :
        std::span{entries}.first(static_cast<std::size_t>(std::min<std::ptrdiff_t>(count, mostEntries))))
        section.entries << QString::fromStdString(nameOf(entry));
    if (count > mostEntries)
        section.more = QString{"+%1 more"}.arg(count - mostEntries);
    return section;
}

RuleSection sitesSection(std::span<const std::string> domains)
{
    return section("globe", "desktop.quickBlock.websites", domains, [](const std::string& domain) { return domain; });
}

QList<RuleSection> sectionsOf(const BlockRule& rule, std::span<const std::string> blockList)
{
    QList<RuleSection> sections;
    if (!rule.customDomains.empty())
        sections << sitesSection(rule.customDomains);
    if (const auto& apps = appsOf(rule); !apps.empty())
        sections << section("app.fill", "desktop.quickBlock.apps", apps, [](const AppInfo& app) { return app.name; });
    const bool isCategory = rule.category && rule.category != customCategory;
    if (rule.customDomains.empty() && isCategory && !blockList.empty())
        sections << sitesSection(blockList);
    return sections;
}

} // namespace

RuleRow ruleRow(const BlockRule& rule, std::span<const std::string> blockList)
{
    const bool isCategory = rule.category && rule.category != customCategory;
    const bool hasCooldown = rule.unblockPolicy == "cooldown" && rule.cooldownHours;
    return {
        .id = QString::fromStdString(rule.id),
        .symbol = symbolOf(rule),
        .color = Styles::category(QString::fromStdString(rule.category.value_or(""))).color,
        .title = QString::fromStdString(rule.customName.value_or(rule.categoryDisplayName())),
        .subtitle = subtitleOf(rule),
        .policy = QString::fromStdString(rule.unblockPolicy),
        .policyName = policyNameOf(rule.unblockPolicy),
        .cooldown = hasCooldown ? QString::number(*rule.cooldownHours) + 'h' : QString{},
        .sections = sectionsOf(rule, blockList),
        .blocksNothing = rule.customDomains.empty() && appsOf(rule).empty() && !isCategory,
    };
}

} // namespace stillgate
