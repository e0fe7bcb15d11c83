// stillgate-settings-use FILE
//
// Opens the settings window, over services in memory, chooses its tabs and scrolls, as a user does, and writes into
// FILE how long they wait for it (SettingsFigures). It is a program of its own, so that the memory is the window's
// alone.

#include "Models/JSONCoding.h"
#include "ProcessCost.h"
#include "SettingsContent.h"
#include "SettingsFigures.h"
#include "Views/Settings/SettingsViewModel.h"
#include "tests/shots/LanguageInUse.h"
#include "tests/shots/Stage.h"
#include "tests/support/TemporaryFolder.h"

#include <QEventLoop>
#include <QGuiApplication>
#include <QQmlIncubationController>
#include <QQuickItem>
#include <QTimer>

#include <algorithm>
#include <iostream>
#include <map>
#include <stdexcept>
#include <sysexits.h>
#include <unistd.h>

namespace stillgate
{

using namespace std::chrono_literals;

namespace
{

constexpr int rounds = 10;
constexpr int protectionTab = 3;
constexpr auto longestWait = 20s;
constexpr auto rest = 30ms;      ///< after which the window has done what it does by itself
constexpr int leastFrames = 500; ///< of 1,000 rows
constexpr double stride = 100;   ///< logical pixels a frame: a wheel that turns fast

void pass(std::chrono::milliseconds time)
{
    QEventLoop loop;
    QTimer::singleShot(time, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}

/// From the change, which may open the window, to the end of the next frame.
template <class Change>
Seconds timeToFrame(Change change)
{
    QEventLoop loop;
    QTimer patience;
    QObject::connect(&patience, &QTimer::timeout, &loop, [&loop] { loop.exit(EXIT_FAILURE); });
    patience.start(longestWait);
    const auto begin = std::chrono::steady_clock::now();
    change();
    QObject::connect(&test::Stage::window(), &QQuickWindow::frameSwapped, &loop, &QEventLoop::quit);
    if (loop.exec() != EXIT_SUCCESS)
        throw std::runtime_error{"no frame in the settings window"};
    return std::chrono::steady_clock::now() - begin;
}

/// Until the rows beyond the page are made, too.
void letRest()
{
    do
        pass(rest);
    while (test::Stage::window().incubationController()->incubatingObjectCount() > 0);
}

std::vector<int> tabs()
{
    std::vector<int> tags;
    for (const auto& item : SettingsViewModel::sidebarItems()) {
        if (!item.icon.isEmpty())
            tags.push_back(item.tag);
    }
    return tags;
}

QQuickItem* listIn(QQuickItem& item)
{
    if (item.inherits("QQuickListView"))
        return &item;
    for (auto* child : item.childItems()) {
        if (auto* list = listIn(*child))
            return list;
    }
    return nullptr;
}

class SettingsUse
{
public:
    SettingsUse() { putContent(m_stage); }

    SettingsFigures measure()
    {
        SettingsFigures figures;
        measureOpening(figures);
        measureTabs(figures);
        measureMemory(figures);
        measureThousandRules(figures);
        return figures;
    }

private:
    Seconds open()
    {
        return timeToFrame([this] { m_stage.openSettings(m_tabs.front()); });
    }

    Seconds choose(int tab)
    {
        return timeToFrame([&] { m_stage.notifications.post(sgNavigateToTab, {{"tab", tab}}); });
    }

    /// Leaves the window open.
    void measureOpening(SettingsFigures& figures)
    {
        std::vector<Seconds> times;
        open();
        for (int round = 0; round < rounds; ++round) {
            letRest();
            test::Stage::window().close();
            pass(rest);
            times.push_back(open());
        }
        letRest();
        figures.opening = median(std::move(times)).count();
    }

    void measureTabs(SettingsFigures& figures)
    {
        std::map<int, std::vector<Seconds>> times;
        for (int round = 0; round <= rounds; ++round) {
            for (const int tab : m_tabs) {
                if (round == 0 && tab == m_tabs.front())
                    continue; // the window has opened with it
                times[tab].push_back(choose(tab));
                letRest();
            }
        }
        std::vector<Seconds> firsts;
        std::vector<Seconds> medians;
        for (const auto& [tab, ofTab] : times) {
            firsts.push_back(ofTab.front());
            medians.push_back(median(ofTab));
        }
        figures.firstVisit = std::ranges::max(firsts).count();
        figures.slowestTab = std::ranges::max(medians).count();
        figures.usualTab = median(std::move(medians)).count();
    }

    void measureMemory(SettingsFigures& figures)
    {
        const auto memoryAfter = [this](int choices) {
            for (int choice = 0; choice < choices; ++choice)
                choose(m_tabs.at(static_cast<std::size_t>(choice) % m_tabs.size()));
            letRest();
            return memoryOf(::getpid());
        };
        figures.memoryEarly = memoryAfter(100);
        figures.memoryLate = memoryAfter(900);
    }

    void measureThousandRules(SettingsFigures& figures)
    {
        m_stage.state.blockRules = mixedRules(1'000);
        std::vector<Seconds> times;
        for (int round = 0; round < rounds; ++round) {
            choose(m_tabs.front());
            letRest();
            times.push_back(choose(protectionTab));
            letRest();
        }
        figures.thousandRules = median(std::move(times)).count();
        figures.thousandScrolled = meanFrameOfScroll().count();
    }

    static Seconds meanFrameOfScroll()
    {
        auto* list = listIn(*test::Stage::window().contentItem());
        if (list == nullptr)
            throw std::runtime_error{"no list in the tab"};
        int frames = 0;
        Seconds time{0};
        while (!list->property("atYEnd").toBool()) {
            const auto place = list->property("contentY").toReal() + stride;
            time += timeToFrame([&] { list->setProperty("contentY", place); });
            ++frames;
        }
        if (frames < leastFrames)
            throw std::runtime_error{"the list of rules is too short"};
        return time / frames;
    }

    std::vector<int> m_tabs = tabs();
    test::Stage m_stage;
};

bool writeFigures(const std::filesystem::path& file)
{
    const auto text = JSONEncoder{DateForm::iso8601}.encode(SettingsUse{}.measure());
    if (!text)
        return false;
    test::putFile(file, *text);
    return true;
}

int run(int argc, char** argv)
{
    QQuickWindow::setSceneGraphBackend("software"); // as the application does
    const QGuiApplication application{argc, argv};
    QGuiApplication::setQuitOnLastWindowClosed(false);
    const test::LanguageInUse english{"en"};
    return writeFigures(argv[1]) ? EX_OK : EX_SOFTWARE;
}

} // namespace

} // namespace stillgate

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::cerr << "Usage: stillgate-settings-use FILE\n";
        return EX_USAGE;
    }
    try {
        return stillgate::run(argc, argv);
    } catch (const std::exception& problem) {
        std::cerr << "Cannot measure: " << problem.what() << "\n";
        return EX_OSERR;
    }
}
