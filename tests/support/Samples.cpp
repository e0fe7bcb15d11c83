#include "tests/support/Samples.h"

namespace stillgate::test
{

BlockRule rule(std::string id, std::optional<std::string> category, std::vector<std::string> domains)
{
    return {
        .id = std::move(id),
        .category = std::move(category),
        .enabled = true,
        .customDomains = std::move(domains),
        .unblockPolicy = "flexible",
    };
}

AppsByPlatform apps(const std::vector<std::string>& bundleIds)
{
    AppsByPlatform byPlatform;
    for (const auto& bundleId : bundleIds)
        byPlatform[ownPlatform].push_back({.bundleId = bundleId, .name = bundleId});
    return byPlatform;
}

GuardianBlockRule guardianRule(std::optional<std::string> category, std::optional<std::vector<std::string>> domains)
{
    return {
        .id = "g1",
        .connectionId = "c1",
        .controllerUserId = "",
        .controlledUserId = "u1",
        .category = std::move(category),
        .enabled = true,
        .customDomains = std::move(domains),
    };
}

SharingConnection controlledConnection(std::optional<std::string> flexibilityMode)
{
    return {
        .id = "c1",
        .controllerUserId = "u2",
        .controlledUserId = "u1",
        .role = "controlled",
        .flexibilityMode = std::move(flexibilityMode),
        .customBlockMessage = "Homework first",
        .blockIllustrationKey = "ill-forest",
        .isActive = true,
    };
}

SGDevice device(std::string id, std::string platform)
{
    return {.id = std::move(id), .deviceName = "Desk", .platform = std::move(platform), .isActive = true};
}

SGTask task(std::string id, std::string title)
{
    return {
        .id = std::move(id),
        .assignerId = "u2",
        .assigneeId = "u1",
        .title = std::move(title),
        .rewardMinutes = 15,
        .status = "pending",
    };
}

BlockSchedule schedule(std::string name, bool enabled)
{
    return {.id = name, .name = name, .scheduleType = "always", .timezone = "Europe/Istanbul", .enabled = enabled};
}

EffectiveRulesResponse guarded(std::string domain)
{
    return {.rules = {{.id = "g",
                .userId = "u1",
                .category = "gaming",
                .enabled = true,
                .customDomains = {{std::move(domain)}},
                ._source = "guardian"}}};
}

DeviceCodeResponse deviceCode(std::string name)
{
    return {
        .deviceCode = name,
        .userCode = "AB-" + name,
        .verificationUrl = "https://stillgate.example/link",
        .expiresIn = 60,
        .interval = 5,
    };
}

} // namespace stillgate::test
