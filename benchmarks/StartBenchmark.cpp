#include "App/StateCache.h"
#include "DomainGenerator.h"
#include "Home.h"
#include "Models/JSONCoding.h"
#include "Platform/HostsBlock.h"
#include "Subjects.h"
#include "tests/support/TemporaryFolder.h"

#include <cstdlib>
#include <expected>
#include <fstream>
#include <thread>

namespace stillgate
{

namespace fs = std::filesystem;
using namespace std::chrono_literals;

namespace
{

constexpr auto what = "start to enforced cached rules";
constexpr Seconds budget = 150ms;
constexpr auto pollPeriod = 500us;
constexpr auto longestWait = 10s;

/// The hosts file as it was, without a block: put back by reset() and at the end.
class HostsFile
{
public:
    HostsFile()
        : m_original(withoutHostsBlocks(test::fileBytes(hostsPath), {}))
    {}

    ~HostsFile()
    {
        try {
            reset();
        } catch (const std::exception&) {
            // It is gone with the private /etc.
        }
    }

    HostsFile(const HostsFile&) = delete;
    HostsFile& operator=(const HostsFile&) = delete;

    void reset() const { test::putFile(hostsPath, m_original); }

    /// Reads the last line alone: what is asked every half millisecond must not cost the program its time.
    [[nodiscard]] static bool hasBlock()
    {
        const auto lastLine = std::string{hostsMarkerEnd} + "\n";
        std::ifstream stream{fs::path{hostsPath}, std::ios::binary};
        stream.seekg(-static_cast<std::streamoff>(lastLine.size()), std::ios::end);
        std::string tail(lastLine.size(), '\0');
        return stream.read(tail.data(), static_cast<std::streamsize>(tail.size())) && tail == lastLine;
    }

private:
    std::string m_original;
};

/// 20 rules, three of them with a category's block list.
std::string cacheText()
{
    CachedState cached;
    DomainGenerator generator;
    for (const auto* category : {"social_media", "gaming", "news"}) {
        cached.blockRules.push_back(customRule(category, {}));
        cached.blockRules.back().category = category;
    }
    while (cached.blockRules.size() < 20)
        cached.blockRules.push_back(customRule(std::to_string(cached.blockRules.size()), generator.take(5)));
    return JSONEncoder{DateForm::secondsSince2001}.encode(cached).value();
}

/// The time of one start, or why there is none.
std::expected<Seconds, std::string> timeOfStart()
{
    const Home home;
    home.putSession();
    home.putCache(cacheText());
    const auto call = home.call({"--headless"});
    const auto begin = std::chrono::steady_clock::now();
    ChildProgram child{call};
    if (!child.hasStarted())
        return std::unexpected{"cannot start " + call.program};
    while (!HostsFile::hasBlock()) {
        if (std::chrono::steady_clock::now() - begin > longestWait)
            return std::unexpected{"no block in the hosts file after 10 seconds"};
        std::this_thread::sleep_for(pollPeriod);
    }
    const Seconds time = std::chrono::steady_clock::now() - begin;
    child.terminate();
    if (child.wait() != 0)
        return std::unexpected{"the program failed when it was told to end"};
    return time;
}

void measureStart(benchmark::State& state, Report& report)
{
    const HostsFile hostsFile;
    std::vector<Seconds> times;
    while (state.KeepRunning()) {
        hostsFile.reset();
        const auto time = timeOfStart();
        if (!time) {
            report.fail(what, time.error());
            state.SkipWithError(time.error().c_str());
            return;
        }
        times.push_back(*time);
        state.SetIterationTime(time->count());
    }
    report.add(what, median(std::move(times)), Yardstick{"budget", budget});
}

bool isInPrivateWorld()
{
    const auto* value = std::getenv("STILLGATE_PRIVATE_WORLD");
    return value != nullptr && std::string_view{value} == "1";
}

} // namespace

void registerStartBenchmarks(Report& report)
{
    if (!isInPrivateWorld()) {
        report.skip(what, "it changes /etc/hosts; run stillgate-bench with scripts/private-world");
        return;
    }
    const auto measure = [&report](benchmark::State& state) { measureStart(state, report); };
    benchmark::RegisterBenchmark(what, measure)->UseManualTime()->Iterations(15);
}

} // namespace stillgate
