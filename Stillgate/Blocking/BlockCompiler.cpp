#include "Blocking/BlockCompiler.h"

#include "Blocking/DomainNames.h"

#include <algorithm>
#include <string_view>

namespace stillgate
{

namespace
{

template <class Rule>
std::vector<const Rule*> enabledOf(const std::vector<Rule>& rules)
{
    std::vector<const Rule*> enabled;
    for (const auto& rule : rules) {
        if (rule.enabled)
            enabled.push_back(&rule);
    }
    return enabled;
}

std::vector<std::string> categoriesOf(const std::vector<const BlockRule*>& rules)
{
    std::vector<std::string> categories;
    for (const auto* rule : rules) {
        if (rule->category)
            categories.push_back(*rule->category);
    }
    return categories;
}

/// Each domain once, where it stands first; letters of other case make another domain here.
class DomainList
{
public:
    void append(std::span<const std::string> domains)
    {
        for (const auto& domain : domains) {
            if (m_seen.insert(domain).second)
                m_domains.push_back(domain);
        }
    }

    std::vector<std::string> take() { return std::move(m_domains); }

private:
    std::unordered_set<std::string_view> m_seen; // of the inputs, which outlive the list
    std::vector<std::string> m_domains;
};

std::vector<std::string> domainsOf(const std::vector<const BlockRule*>& rules,
    const std::vector<std::string>& categories, const CategoryLookup& domainsOfCategory)
{
    DomainList domains;
    for (const auto* rule : rules)
        domains.append(rule->customDomains);
    for (const auto& category : categories)
        domains.append(domainsOfCategory(category));
    return domains.take();
}

/// The identifiers, in lower case, of the apps that a rule names for this platform.
std::vector<std::string> bundleIdsOf(const std::optional<AppsByPlatform>& apps)
{
    std::vector<std::string> bundleIds;
    const auto own = apps ? apps->find(ownPlatform) : AppsByPlatform::const_iterator{};
    if (!apps || own == apps->end())
        return bundleIds;
    for (const auto& app : own->second) {
        if (app.bundleId)
            bundleIds.push_back(lowercased(*app.bundleId));
    }
    return bundleIds;
}

void addOwnRule(const BlockRule& rule, ProcessMonitorConfiguration& monitor)
{
    for (const auto& bundleId : bundleIdsOf(rule.customApps)) {
        monitor.customBlockedBundleIds.insert(bundleId);
        monitor.bundleIdPolicies[bundleId] = rule.unblockPolicy;
        if (rule.category)
            monitor.bundleIdCategories[bundleId] = *rule.category;
    }
    if (!rule.category)
        return;
    for (const auto& domain : rule.customDomains)
        monitor.domainCategories[lowercased(domain)] = *rule.category;
}

void addGuardianRule(const GuardianBlockRule& rule, ProcessMonitorConfiguration& monitor)
{
    for (const auto& bundleId : bundleIdsOf(rule.customApps)) {
        monitor.customBlockedBundleIds.insert(bundleId);
        if (rule.category)
            monitor.bundleIdCategories[bundleId] = *rule.category;
    }
    if (!rule.category || !rule.customDomains)
        return;
    for (const auto& domain : *rule.customDomains) {
        monitor.domainCategories[lowercased(domain)] = *rule.category;
        monitor.blockedDomains.insert(lowercased(domain));
    }
}

std::optional<std::string> sessionLabel(const std::vector<BlockSchedule>& schedules)
{
    const auto enabled = std::ranges::find(schedules, true, &BlockSchedule::enabled);
    return enabled == schedules.end() ? std::nullopt : std::optional{enabled->name};
}

void applyGuardianSettings(const std::vector<SharingConnection>& connections, ProcessMonitorConfiguration& monitor)
{
    const auto guardian = std::ranges::find(connections, "controlled", &SharingConnection::role);
    if (guardian == connections.end())
        return;
    monitor.guardianMessage = guardian->customBlockMessage;
    monitor.guardianIllustrationKey = guardian->blockIllustrationKey;
    monitor.guardianFlexibilityMode = guardian->flexibilityMode.value_or(flexibleMode);
}

} // namespace

CompiledBlocks compileBlocks(const BlockInputs& inputs, const CategoryLookup& domainsOfCategory)
{
    const auto rules = enabledOf(inputs.blockRules);
    CompiledBlocks blocks{.budget = inputs.budget};
    blocks.dnsProxy.categories = categoriesOf(rules);
    blocks.hostsDomains = domainsOf(rules, blocks.dnsProxy.categories, domainsOfCategory);
    blocks.dnsProxy.domains = blocks.hostsDomains;

    blocks.monitor.blockedProcesses.clear();
    blocks.monitor.activeSession = sessionLabel(inputs.schedules);
    for (const auto& domain : blocks.hostsDomains)
        blocks.monitor.blockedDomains.insert(lowercased(domain));
    for (const auto* rule : rules)
        addOwnRule(*rule, blocks.monitor);
    for (const auto* rule : enabledOf(inputs.guardianRulesForMe))
        addGuardianRule(*rule, blocks.monitor);
    applyGuardianSettings(inputs.sharingConnections, blocks.monitor);
    return blocks;
}

} // namespace stillgate
