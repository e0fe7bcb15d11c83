#include "Blocking/DomainNames.h"
#include "ChildProgram.h"
#include "DomainGenerator.h"
#include "Home.h"
#include "Screen.h"
#include "Subjects.h"
#include "tests/desktop/X11TestWindow.h"

#include <algorithm>
#include <cstdlib>
#include <stdexcept>
#include <thread>
#include <tuple>

namespace stillgate
{

using namespace std::chrono_literals;

namespace
{

constexpr Seconds longestLookUp = 1us;
constexpr Seconds longestBlock = 100ms;
constexpr auto longestWait = 20s;
constexpr int hostsAskedAbout = 100'000;

constexpr auto cacheThatForbidsTerminals = R"({"streak": {"currentStreakDays": 0, "longestStreakDays": 0},
    "blockRules": [{"id": "1", "enabled": true, "category": "custom", "customDomains": [], "excludedDomains": [],
        "customApps": {"macos": [{"bundleId": "com.apple.Terminal", "name": "Terminal"}]},
        "unblockPolicy": "flexible"}],
    "devices": [], "schedules": [], "tasks": [], "connections": []})";

/// The same host, some labels below a domain of the list, and one that only looks like it.
std::vector<std::string> hostsFor(const std::vector<std::string>& domains)
{
    std::vector<std::string> hosts;
    for (std::size_t i = 0; hosts.size() < hostsAskedAbout; ++i) {
        hosts.push_back("cdn.eu.static." + domains[i]);
        hosts.push_back("cdn.eu.static.x" + domains[i]);
    }
    return hosts;
}

void reportLookUp(benchmark::State& state, Report& report)
{
    const auto domains = DomainGenerator{}.take(1'000'000);
    const auto hosts = hostsFor(domains);
    const DomainSet set{domains.begin(), domains.end()};
    const auto time = medianOf(state, [&] {
        return std::ranges::count_if(hosts, [&](const auto& host) { return domainCovering(set, host) != nullptr; });
    });
    report.add(
        "is this host blocked, among 1,000,000 domains", time / hostsAskedAbout, Yardstick{"budget", longestLookUp});
}

template <class Condition>
void waitFor(const char* what, Condition condition)
{
    const auto begin = std::chrono::steady_clock::now();
    while (!condition()) {
        if (std::chrono::steady_clock::now() - begin > longestWait)
            throw std::runtime_error{what};
        std::this_thread::sleep_for(1ms);
    }
}

/// From the moment at which a forbidden app asks to be shown to something that can be seen in the block screen: what
/// the window manager needs for it counts too.
Seconds timeToBlockScreen(const test::X11TestWindow& app)
{
    Screen screen;
    const auto begin = std::chrono::steady_clock::now();
    app.show();
    app.activate();
    waitFor("no block screen comes up", [&] { return screen.hasPicture(); });
    const auto time = std::chrono::steady_clock::now() - begin;
    waitFor("the block screen stays", [&] {
        std::ignore = std::system("xdotool key Escape");
        return !screen.hasPicture();
    });
    return time;
}

void reportBlockScreen(benchmark::State& state, Report& report)
{
    const Home home;
    home.putSession();
    home.putCache(cacheThatForbidsTerminals);
    ChildProgram program{home.call()};
    std::this_thread::sleep_for(3s);
    const test::X11TestWindow app{"XTerm"};
    std::vector<Seconds> times;
    for (auto _ : state) {
        times.push_back(timeToBlockScreen(app));
        state.SetIterationTime(times.back().count());
    }
    report.add("forbidden app in front to the block screen's first frame", median(std::move(times)),
        Yardstick{"budget", longestBlock});
}

bool isOnPrivateComputer()
{
    return std::getenv("STILLGATE_PRIVATE_WORLD") != nullptr && std::getenv("STILLGATE_PRIVATE_DESKTOP") != nullptr;
}

} // namespace

void registerMonitorBenchmarks(Report& report)
{
    benchmark::RegisterBenchmark(
        "is this host blocked", [&report](benchmark::State& state) { reportLookUp(state, report); })
        ->UseManualTime()
        ->Iterations(5);
    if (!isOnPrivateComputer()) {
        report.skip("the block screen", "it opens windows; run stillgate-bench with scripts/private-computer");
        return;
    }
    benchmark::RegisterBenchmark("block screen",
        [&report](benchmark::State& state) {
            try {
                reportBlockScreen(state, report);
            } catch (const std::exception& problem) {
                report.fail("the block screen", problem.what());
                state.SkipWithError(problem.what());
            }
        })
        ->UseManualTime()
        ->Iterations(20);
}

} // namespace stillgate
