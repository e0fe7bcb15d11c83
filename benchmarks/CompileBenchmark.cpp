#include "Blocking/BlockCompiler.h"
#include "DomainGenerator.h"
#include "Subjects.h"

#include <algorithm>
#include <array>

namespace stillgate
{

namespace
{

struct Size
{
    std::size_t domains;
    const char* name;
    int iterations;
};

constexpr std::array<Size, 3> sizes{{{10, "10", 20'000}, {1'000, "1,000", 500}, {100'000, "100,000", 15}}};

std::vector<BlockRule> rulesWith(std::size_t domains)
{
    constexpr std::size_t mostInRule = 100;
    DomainGenerator generator;
    std::vector<BlockRule> rules;
    for (std::size_t made = 0; made < domains; made += mostInRule)
        rules.push_back(customRule(std::to_string(made), generator.take(std::min(mostInRule, domains - made))));
    return rules;
}

Seconds measureCompile(benchmark::State& state, const std::vector<BlockRule>& rules)
{
    const auto noList = [](const std::string&) { return std::span<const std::string>{}; };
    return medianOf(state, [&] {
        return compileBlocks(
            {
                .blockRules = rules,
                .guardianRulesForMe = {},
                .schedules = {},
                .sharingConnections = {},
                .budget = {},
            },
            noList);
    });
}

} // namespace

void registerCompileBenchmarks(Report& report)
{
    for (const auto& size : sizes) {
        const auto what = "compile " + std::string{size.name} + " domains";
        const auto measure = [&report, what, size](benchmark::State& state) {
            report.add(what, measureCompile(state, rulesWith(size.domains)));
        };
        benchmark::RegisterBenchmark(what.c_str(), measure)->UseManualTime()->Iterations(size.iterations);
    }
}

} // namespace stillgate
