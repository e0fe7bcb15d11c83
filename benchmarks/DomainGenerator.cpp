#include "DomainGenerator.h"

#include "App/StateCache.h"
#include "Models/JSONCoding.h"

#include <array>

namespace stillgate
{

namespace
{

AppInfo appNamed(const std::string& name)
{
    return {.bundleId = "com.example." + name, .name = name};
}

BlockRule ruleNumber(int number, DomainGenerator& generator)
{
    const Date made =
        std::chrono::sys_days{std::chrono::year{2026} / 1 / 1} + std::chrono::milliseconds{number * 61'003};
    const auto name = std::to_string(number);
    auto rule = customRule("7d1c9a52-0c1e-4a6f-9a51-" + name, generator.take(5));
    rule.userId = "2f9f6d1f-7a10-4c55-8f4e-0a6f9a512f9f";
    rule.excludedDomains = generator.take(1);
    rule.customApps = AppsByPlatform{{ownPlatform, {appNamed("Game" + name), appNamed("Chat" + name)}}};
    rule.cooldownHours = 24;
    rule.createdAt = made;
    rule.updatedAt = made + std::chrono::hours{30};
    return rule;
}

} // namespace

std::string DomainGenerator::next()
{
    constexpr std::array<const char*, 6> endings{".com", ".org", ".net", ".de", ".co.uk", ".io"};
    std::string name;
    for (auto letters = 4 + m_random() % 8; letters > 0; --letters)
        name += static_cast<char>('a' + m_random() % 26);
    name += std::to_string(m_count++); // keeps them apart
    return name + endings.at(m_random() % endings.size());
}

std::vector<std::string> DomainGenerator::take(std::size_t count)
{
    std::vector<std::string> domains;
    domains.reserve(count);
    while (domains.size() < count)
        domains.push_back(next());
    return domains;
}

BlockRule customRule(std::string id, std::vector<std::string> domains)
{
    return {
        .id = std::move(id),
        .category = "custom",
        .customName = "Distractions",
        .enabled = true,
        .customDomains = std::move(domains),
        .unblockPolicy = flexibleMode,
    };
}

std::string largeCache(int rules)
{
    CachedState cached;
    DomainGenerator generator;
    for (int number = 0; number < rules; ++number)
        cached.blockRules.push_back(ruleNumber(number, generator));
    return JSONEncoder{DateForm::secondsSince2001}.encode(cached).value();
}

} // namespace stillgate
