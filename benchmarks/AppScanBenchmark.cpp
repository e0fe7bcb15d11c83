#include "App/InstalledApp.h"
#include "Platform/Linux/Desktop/AbsentWorkspace.h"
#include "Platform/Memory/MemoryLog.h"
#include "Subjects.h"
#include "tests/support/TemporaryFolder.h"

#include <QLocale>

#include <sstream>

namespace stillgate
{

using namespace std::chrono_literals;

namespace
{

constexpr Seconds longestScan = 100ms;
constexpr int apps = 1'000;
constexpr int languages = 60; // of an entry of a well-kept app, which is then 5 kB long

std::string identifierOf(int app)
{
    return "org.example.App" + std::to_string(app);
}

std::string entryOf(int app)
{
    std::ostringstream entry;
    entry << "[Desktop Entry]\nType=Application\nName=App " << app << "\nComment=What app " << app << " does\n";
    for (int language = 0; language < languages; ++language) {
        const std::string code{static_cast<char>('a' + language / 26), static_cast<char>('a' + language % 26)};
        entry << "Name[" << code << "]=App " << app << " by another name\n"
              << "Comment[" << code << "]=What app " << app << " does, in other words\n";
    }
    entry << "TryExec=true\nExec=true --app %U\nCategories=Game;\nIcon=" << identifierOf(app) << "\n";
    return entry.str();
}

/// A folder of data with so many apps, a workspace on them, and the day's use of half of them.
class Apps
{
public:
    Apps()
    {
        for (int app = 0; app < apps; ++app) {
            test::putFile(m_folder.path() / "applications" / (identifierOf(app) + ".desktop"), entryOf(app));
            if (app % 2 == 0)
                m_usage[identifierOf(app)] = app % 100;
        }
    }

    /// By what nobody has read yet; the files are in the kernel's memory.
    std::size_t scanAnew()
    {
        DesktopEntries entries{{m_folder.path()}};
        return scan(entries);
    }

    std::size_t scanAgain() { return scan(m_entries); }

private:
    std::size_t scan(DesktopEntries& entries)
    {
        return scanInstalledApps(AbsentWorkspace{entries, m_log}, m_usage).size();
    }

    test::TemporaryFolder m_folder;
    DesktopEntries m_entries{{m_folder.path()}};
    UsageTracker::AppUsage m_usage;
    MemoryLog m_log;
};

template <class Scan>
void measure(benchmark::State& state, Report& report, const char* what, Scan scan)
{
    QLocale::setDefault(QLocale{"en"}); // as the application does
    Apps machine;
    bool isWhole = scan(machine) == apps;
    const auto time = medianOf(state, [&] {
        const auto found = scan(machine);
        isWhole &= found == apps;
        return found;
    });
    if (isWhole)
        report.add(what, time, Yardstick{"budget", longestScan});
    else
        report.fail(what, "apps are missing");
}

} // namespace

void registerAppScanBenchmarks(Report& report)
{
    const auto add = [&report](const char* what, auto scan) {
        benchmark::RegisterBenchmark(
            what, [&report, what, scan](benchmark::State& state) { measure(state, report, what, scan); })
            ->UseManualTime()
            ->Iterations(21);
    };
    add("list 1,000 installed apps, first time", [](Apps& machine) { return machine.scanAnew(); });
    add("list 1,000 installed apps, again", [](Apps& machine) { return machine.scanAgain(); });
}

} // namespace stillgate
