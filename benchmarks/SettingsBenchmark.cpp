#include "Home.h"
#include "Models/JSONCoding.h"
#include "SettingsFigures.h"
#include "Subjects.h"
#include "tests/support/TemporaryFolder.h"

#include <cstdlib>
#include <stdexcept>

namespace stillgate
{

using namespace std::chrono_literals;

namespace
{

constexpr auto what = "the settings window";
constexpr Seconds openingLimit = 150ms;
constexpr Seconds tabLimit = 50ms;
constexpr Seconds frameLimit = 16ms;

SettingsFigures settingsFigures()
{
    const test::TemporaryFolder folder;
    const auto file = folder.path() / "figures.json";
    ChildProgram program{{builtProgram("stillgate-settings-use"), {file}, {}}};
    if (program.wait() != 0)
        throw std::runtime_error{"stillgate-settings-use failed; run it by itself to see why"};
    const auto figures = JSONDecoder{DateForm::iso8601}.decode<SettingsFigures>(test::fileBytes(file));
    if (!figures)
        throw std::runtime_error{"stillgate-settings-use wrote no figures"};
    return *figures;
}

void reportSettings(Report& report)
{
    const auto figures = settingsFigures();
    report.add("settings window: opened again", Seconds{figures.opening}, Yardstick{"limit", openingLimit});
    report.add("its tabs: usual one chosen", Seconds{figures.usualTab}, Yardstick{"limit", tabLimit});
    report.add("its tabs: slowest one chosen", Seconds{figures.slowestTab}, Yardstick{"limit", tabLimit});
    report.add("its tabs: slowest one, first time", Seconds{figures.firstVisit}, Yardstick{"limit", tabLimit});
    report.add("its list of 1,000 rules: chosen", Seconds{figures.thousandRules}, Yardstick{"limit", tabLimit});
    report.add("its list of 1,000 rules: mean frame while scrolled", Seconds{figures.thousandScrolled},
        Yardstick{"limit", frameLimit});
    report.add("its memory after 1,000 choices of a tab", Amount{figures.memoryLate, "MB"},
        AmountYardstick{"after 100, to be 1.05 at most", figures.memoryEarly});
}

void measureSettings(benchmark::State& state, Report& report)
{
    const auto measureOnce = [&] {
        reportSettings(report);
        return true;
    };
    try {
        for (auto _ : state)
            state.SetIterationTime(timeOf(measureOnce).count());
    } catch (const std::exception& problem) {
        report.fail(what, problem.what());
        state.SkipWithError(problem.what());
    }
}

} // namespace

void registerSettingsBenchmarks(Report& report)
{
    if (std::getenv("STILLGATE_PRIVATE_DESKTOP") == nullptr) {
        report.skip(what, "it opens; run stillgate-bench with scripts/private-computer");
        return;
    }
    const auto measure = [&report](benchmark::State& state) { measureSettings(state, report); };
    benchmark::RegisterBenchmark(what, measure)->UseManualTime()->Iterations(1);
}

} // namespace stillgate
