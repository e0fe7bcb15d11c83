#include "Models/BlockRules.h"

#include <array>
#include <utility>

namespace stillgate
{

namespace
{

constexpr std::array<std::pair<std::string_view, std::string_view>, 7> categoryNames{{
    {"gambling", "Gambling & Betting"},
    {"social_media", "Social Media"},
    {"adult", "Adult Content"},
    {"gaming", "Gaming"},
    {"news", "News & Distraction"},
    {"streaming", "Streaming & Video"},
    {"shopping", "Shopping"},
}};

GuardianBlockRule guardianRule(const EffectiveRule& rule)
{
    return {
        .id = rule.id,
        .connectionId = rule._connectionId.value_or(""),
        .controlledUserId = rule.userId,
        .category = rule.category,
        .customName = rule.customName,
        .enabled = rule.enabled,
        .customDomains = rule.customDomains,
        .customApps = rule.customApps,
    };
}

} // namespace

std::string BlockRule::categoryDisplayName() const
{
    if (!category)
        return "Unknown";
    if (*category == "custom")
        return customName.value_or("Custom");
    for (const auto& [slug, name] : categoryNames) {
        if (*category == slug)
            return std::string{name};
    }
    return *category;
}

std::vector<GuardianBlockRule> guardianRules(const EffectiveRulesResponse& response)
{
    std::vector<GuardianBlockRule> rules;
    for (const auto& rule : response.rules) {
        if (rule._source == "guardian")
            rules.push_back(guardianRule(rule));
    }
    return rules;
}

} // namespace stillgate
