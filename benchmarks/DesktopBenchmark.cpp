#include "DomainGenerator.h"
#include "Home.h"
#include "ProcessCost.h"
#include "Screen.h"
#include "Subjects.h"
#include "tests/desktop/StatusNotifierHost.h"

#include <QEventLoop>
#include <QTimer>

#include <cstdlib>
#include <stdexcept>
#include <thread>

namespace stillgate
{

using namespace std::chrono_literals;

namespace
{

constexpr auto settlingTime = 3s;
constexpr auto shortSample = 10s;
constexpr auto pollPeriod = 1ms;
constexpr auto longestWait = 20s;

constexpr double trayBudget = 30;                // MB
constexpr double windowShare = 3;                // % of a core, for a window with moving light
constexpr double timersOfTheDesign = 2 * 60 + 2; // a minute: the window watch, and the meter

/// The bus is answered meanwhile: this program is the panel that the status items are in.
void pass(std::chrono::milliseconds time)
{
    QEventLoop loop;
    QTimer::singleShot(time, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}

std::unique_ptr<ChildProgram> started(const ProgramCall& call)
{
    auto program = std::make_unique<ChildProgram>(call);
    if (!program->hasStarted())
        throw std::runtime_error{"cannot start " + call.program};
    return program;
}

struct IdleCost
{
    double memory;    ///< MB
    double wakeups;   ///< a minute
    double processor; ///< % of a core
};

IdleCost idleCostOf(const ProgramCall& call, Seconds sample)
{
    const auto program = started(call);
    pass(settlingTime);
    const auto before = useOf(program->pid());
    pass(std::chrono::duration_cast<std::chrono::milliseconds>(sample));
    const auto after = useOf(program->pid());
    return {
        .memory = memoryOf(program->pid()),
        .wakeups = static_cast<double>(after.wakeups - before.wakeups) * (1min / sample),
        .processor = (after.processor - before.processor) / sample * 100,
    };
}

void reportTray(Report& report)
{
    const test::StatusNotifierHost panel;
    const Home home;
    home.putSession();
    const auto cost = idleCostOf(home.call(), 30s);
    const auto peer = idleCostOf({builtProgram("stillgate-tray-peer"), {}, {}}, 1s);
    const auto* what = "status item alone: memory";
    report.add(what, Amount{cost.memory, "MB"}, AmountYardstick{"budget", trayBudget});
    report.add(what, Amount{cost.memory, "MB"}, AmountYardstick{"a status item of Qt, nothing else", peer.memory});
    report.add(
        "its wake-ups", Amount{cost.wakeups, "a minute"}, AmountYardstick{"timers of the design", timersOfTheDesign});
    report.add("its share of a core", Amount{cost.processor, "%"});
}

void reportManyRules(Report& report)
{
    const test::StatusNotifierHost panel;
    const Home home;
    home.putSession();
    home.putCache(largeCache(2'000));
    const auto cost = idleCostOf(home.call(), shortSample);
    report.add("the same with 2,000 rules: memory", Amount{cost.memory, "MB"});
    report.add(
        "its wake-ups", Amount{cost.wakeups, "a minute"}, AmountYardstick{"timers of the design", timersOfTheDesign});
    report.add("its share of a core", Amount{cost.processor, "%"});
}

void reportSignInWindow(Report& report)
{
    const Home home;
    const auto cost = idleCostOf(home.call(), shortSample);
    const auto peer = idleCostOf({builtProgram("stillgate-quick-peer"), {}, {}}, 1s);
    report.add(
        "sign-in window, waiting: share of a core", Amount{cost.processor, "%"}, AmountYardstick{"limit", windowShare});
    report.add(
        "its memory", Amount{cost.memory, "MB"}, AmountYardstick{"a window of Qt Quick, nothing else", peer.memory});
}

/// From the start of the program to something in its window, as seen from outside.
Seconds timeToPicture(const ProgramCall& call)
{
    Screen screen;
    const auto begin = std::chrono::steady_clock::now();
    const auto program = started(call);
    while (!screen.hasPicture()) {
        if (std::chrono::steady_clock::now() - begin > longestWait)
            throw std::runtime_error{"no picture in a window of " + call.program};
        std::this_thread::sleep_for(pollPeriod);
    }
    return std::chrono::steady_clock::now() - begin;
}

void reportFirstFrame(benchmark::State& state, Report& report)
{
    std::vector<Seconds> times;
    std::vector<Seconds> peerTimes;
    for (auto _ : state) {
        const Home home;
        times.push_back(timeToPicture(home.call()));
        state.SetIterationTime(times.back().count());
        peerTimes.push_back(timeToPicture({builtProgram("stillgate-quick-peer"), {}, {}}));
    }
    report.add("start to the first frame of the sign-in", median(std::move(times)),
        Yardstick{"a window of Qt Quick, nothing else", median(std::move(peerTimes))});
}

bool isOnPrivateComputer()
{
    return std::getenv("STILLGATE_PRIVATE_WORLD") != nullptr && std::getenv("STILLGATE_PRIVATE_DESKTOP") != nullptr;
}

template <class Work>
void add(Report& report, const std::string& what, int iterations, Work work)
{
    const auto measure = [&report, what, work](benchmark::State& state) {
        try {
            work(state, report);
        } catch (const std::exception& problem) {
            report.fail(what, problem.what());
            state.SkipWithError(problem.what());
        }
    };
    benchmark::RegisterBenchmark(what.c_str(), measure)->UseManualTime()->Iterations(iterations);
}

/// What is looked at once, for a while.
void addIdle(Report& report, const std::string& what, void (*work)(Report&))
{
    add(report, what, 1, [work](benchmark::State& state, Report& rows) {
        const auto workOnce = [&] {
            work(rows);
            return true;
        };
        for (auto _ : state)
            state.SetIterationTime(timeOf(workOnce).count());
    });
}

} // namespace

void registerDesktopBenchmarks(Report& report)
{
    if (!isOnPrivateComputer()) {
        report.skip(
            "the application on a desktop", "it opens windows; run stillgate-bench with scripts/private-computer");
        return;
    }
    addIdle(report, "status item alone", reportTray);
    addIdle(report, "2,000 rules", reportManyRules);
    addIdle(report, "sign-in window, waiting", reportSignInWindow);
    add(report, "start to the first frame", 10, reportFirstFrame);
}

} // namespace stillgate
