#include "App/StateCache.h"
#include "DomainGenerator.h"
#include "Models/JSONCoding.h"
#include "Subjects.h"

#include <nlohmann/json.hpp>

namespace stillgate
{

namespace
{

constexpr auto what = "decode a cache of 2,000 rules";

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

std::string cacheText(int rules)
{
    CachedState cached;
    DomainGenerator generator;
    for (int number = 0; number < rules; ++number)
        cached.blockRules.push_back(ruleNumber(number, generator));
    return JSONEncoder{DateForm::secondsSince2001}.encode(cached).value();
}

void measureDecoding(benchmark::State& state, Report& report)
{
    const auto text = cacheText(2'000);
    bool decoded = true;
    const auto medians = mediansOfBoth(
        state,
        [&] {
            auto cached = JSONDecoder{DateForm::secondsSince2001}.decode<CachedState>(text);
            decoded &= cached.has_value();
            return cached;
        },
        [&] { return nlohmann::json::parse(text).size(); }); // the document ends within the time, as in decode()
    if (decoded)
        report.add(what, medians.ours, Yardstick{"nlohmann::json::parse alone", medians.peers});
    else
        report.fail(what, "the text doesn't decode");
}

} // namespace

void registerCacheBenchmarks(Report& report)
{
    const auto measure = [&report](benchmark::State& state) { measureDecoding(state, report); };
    benchmark::RegisterBenchmark(what, measure)->UseManualTime()->Iterations(51);
}

} // namespace stillgate
