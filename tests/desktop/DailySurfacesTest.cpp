#include "tests/desktop/PrivateWorld.h"
#include "tests/desktop/ProgramWindow.h"
#include "tests/desktop/SignedInProgram.h"
#include "tests/desktop/X11TestWindow.h"

#include <gmock/gmock.h>

namespace stillgate::test
{

using enum AccessibilityBus::Role;

/// A person's day with the program: its windows, driven as they would, beside real apps and a real backend.
class DailySurfaces : public PrivateWorldTest, protected SignedInProgram
{
protected:
    void SetUp() override
    {
        PrivateWorldTest::SetUp();
        if (!begin())
            GTEST_SKIP() << "built for a backend whose keys aren't here";
    }

    [[nodiscard]] ProgramWindow openPopover()
    {
        EXPECT_TRUE(becomes([&] { return m_panel.hasItem(); }));
        EXPECT_TRUE(clickOpensPopover(m_panel));
        return window("Stillgate");
    }

    [[nodiscard]] ProgramWindow openSettings()
    {
        openPopover().press(PushButton, "Open overview");
        auto settings = window("Settings");
        EXPECT_TRUE(settings.comes());
        return settings;
    }

    [[nodiscard]] ProgramWindow openTab(const std::string& name)
    {
        auto settings = openSettings();
        settings.press(RadioButton, name);
        return settings;
    }

    void refresh()
    {
        const auto popover = openPopover();
        popover.press(PushButton, "Refresh");
        popover.key("Escape");
    }

    [[nodiscard]] ProgramWindow window(const std::string& title) { return {m_bus, program(), title}; }

    static void beginRule(const ProgramWindow& settings, const std::string& name)
    {
        settings.press(PushButton, "Add a rule");
        settings.press(RadioButton, "Custom");
        settings.type("What should be blocked?", {name});
        settings.press(PushButton, "Next");
    }

    static void chooseApp(const ProgramWindow& settings, const std::string& name)
    {
        settings.type("Search apps", {name});
        settings.press(CheckBox, name);
    }

    static void enterSites(const ProgramWindow& settings, const std::vector<std::string>& sites)
    {
        settings.press(RadioButton, "Sites");
        settings.type("Enter sites, one on each line", sites);
    }

    static void endRule(const ProgramWindow& settings, const std::string& name)
    {
        settings.press(PushButton, "Next");
        settings.press(PushButton, "Add a rule");
        EXPECT_TRUE(settings.shows(PushButton, name)) << "in the list";
    }

    [[nodiscard]] static bool areRefused(const std::vector<std::string>& sites)
    {
        return becomes([&] {
            return std::ranges::all_of(sites,
                [](const auto& site) { return fileBytes("/etc/hosts").contains("127.0.0.1 www." + site + '\n'); });
        });
    }

    /// Whether the app, once it comes to the front, is hidden and goes on.
    [[nodiscard]] bool isPutAside(const QString& program) const
    {
        const ApplicationProcess app{home, {"--disable-server"}, program};
        const bool isForbidden = blockScreenComes();
        press("Escape");
        return isForbidden && blockScreenGoes() && becomes([&] { return isHidden(windowOf(app)); }) && app.isRunning();
    }

    [[nodiscard]] std::vector<std::string> namesOnServer()
    {
        std::vector<std::string> names;
        for (const auto& rule : ownRules())
            names.push_back(rule.at("customName"));
        return names;
    }

    StatusNotifierHost m_panel;
    AccessibilityBus m_bus;
};

TEST_F(DailySurfaces, ruleHoldsAtOnceWithoutANetworkAndArrivesOnceThereIsOne)
{
    start();
    const auto settings = openTab("Protection");
    cutNetwork();
    beginRule(settings, "Films");
    enterSites(settings, {"video.example", "films.example"});
    endRule(settings, "Films");
    EXPECT_TRUE(areRefused({"video.example", "films.example"}));
    beginRule(settings, "Writing");
    chooseApp(settings, "Mousepad");
    endRule(settings, "Writing");
    EXPECT_TRUE(isPutAside("mousepad"));

    restoreNetwork();
    beginRule(settings, "News");
    enterSites(settings, {"news.example"});
    endRule(settings, "News");
    EXPECT_TRUE(becomes([this] { return namesOnServer() == std::vector<std::string>{"News"}; }));
    settings.press(PushButton, "Delete: News");
    settings.press(PushButton, "Delete");
    EXPECT_TRUE(settings.hides(PushButton, "News"));
    EXPECT_TRUE(becomes([this] { return namesOnServer().empty(); }));
}

TEST_F(DailySurfaces, quickBlockHoldsUntilItIsEnded)
{
    const auto hosts = fileBytes("/etc/hosts");
    start();
    const auto settings = openTab("Protection");
    settings.press(PushButton, "Quick block");
    settings.press(RadioButton, "15 min");
    chooseApp(settings, "Mousepad");
    enterSites(settings, {"video.example"});
    settings.press(PushButton, "Quick block");
    EXPECT_TRUE(settings.shows(Label, "Quick block is on"));
    EXPECT_TRUE(settings.shows(Label, "1 apps · 14m remaining"));
    EXPECT_TRUE(areRefused({"video.example"}));
    EXPECT_TRUE(isPutAside("mousepad"));
    settings.press(PushButton, "End");
    EXPECT_TRUE(settings.hides(Label, "Quick block is on"));
    EXPECT_TRUE(becomes([&] { return fileBytes("/etc/hosts") == hosts; }));

    settings.press(PushButton, "Quick block");
    settings.press(RadioButton, "Until midnight");
    chooseApp(settings, "Mousepad");
    settings.press(PushButton, "Quick block");
    EXPECT_TRUE(settings.shows(Label, "Quick block is on"));
}

TEST_F(DailySurfaces, popoverFollowsTheDayAndGoesWhenNobodyWantsIt)
{
    constexpr int pointerX = 500;
    shell("xdotool mousemove " + std::to_string(pointerX) + " 20");
    start();
    const auto popover = openPopover();
    int x = 0;
    int y = 0;
    const auto place = placeOf(windowTitled("Stillgate"));
    ASSERT_EQ(std::sscanf(place.c_str(), "360x480+%d+%d", &x, &y), 2) << place;
    EXPECT_NEAR(x + 180, pointerX, 1);
    EXPECT_NEAR(y, 20, 20);
    EXPECT_TRUE(popover.hides(Label, "1"));
    makeRule({}, {"video.example"});
    popover.press(PushButton, "Refresh");
    EXPECT_TRUE(popover.shows(Label, "1")) << "of another device";
    popover.key("Escape");
    EXPECT_TRUE(popover.goes());

    const X11TestWindow other{"Other"};
    other.show();
    ASSERT_TRUE(becomes([&] { return other.isActive(); }));
    EXPECT_TRUE(openPopover().comes());
    const auto window = std::to_string(other.number());
    shell("xdotool windowmove --sync " + window + " 1000 500 mousemove --window " + window + " 5 5 click 1");
    EXPECT_TRUE(popover.goes());

    openPopover().press(PushButton, "Quick block");
    const auto settings = this->window("Settings");
    EXPECT_TRUE(settings.comes());
    EXPECT_TRUE(settings.shows(Heading, "Quick block"));
    settings.press(PushButton, "Cancel");
    EXPECT_TRUE(settings.shows(Label, "What you keep away, and how firmly.")) << "of the protection tab";
}

TEST_F(DailySurfaces, taskEarnsItsMinutesOnceTheGuardianApproves)
{
    const auto connection = linkGuardian();
    limitDay(connection, 60);
    giveTask(connection, "Dishes", 15);
    giveTask(connection, "Hoover", 10);
    start();
    const auto tasks = openTab("Tasks");
    EXPECT_TRUE(tasks.shows(Label, "Dishes"));
    tasks.press(PushButton, "Mark as done");
    tasks.press(PushButton, "Mark as done");
    EXPECT_TRUE(tasks.shows(Label, "Awaiting approval"));
    EXPECT_TRUE(becomes([this] {
        return ownTask("Dishes").at("status") == "completed" && ownTask("Hoover").at("status") == "completed";
    }));
    judgeTask("Dishes", "approve");
    judgeTask("Hoover", "reject");
    const auto popover = openPopover();
    EXPECT_TRUE(popover.shows(Label, "1h 0m"));
    popover.press(PushButton, "Refresh");
    EXPECT_TRUE(popover.shows(Label, "+15m"));
    EXPECT_TRUE(popover.shows(Label, "1h 15m")) << "the day is longer";
    const auto& settings = tasks;
    settings.key("ctrl+d");
    EXPECT_TRUE(settings.shows(Label, "+15m Earned"));
    settings.key("ctrl+t");
    EXPECT_TRUE(tasks.shows(Label, "Approved"));
    EXPECT_TRUE(tasks.shows(Label, "Sent back"));
}

TEST_F(DailySurfaces, taskOfOnesOwnIsCreated)
{
    start();
    const auto tasks = openTab("Tasks");
    tasks.press(PushButton, "Create a task");
    tasks.type("What will you do?", {"Read a book"});
    tasks.press(PushButton, "Create");
    EXPECT_TRUE(tasks.shows(Label, "Read a book"));
    EXPECT_EQ(ownTask("Read a book").at("status"), "pending");
}

TEST_F(DailySurfaces, nameOfTheScheduleIsOnTheBlockScreen)
{
    makeRule({editor}, {});
    start();
    const auto schedules = openTab("Schedules");
    schedules.press(PushButton, "New schedule");
    schedules.type("New schedule", {"Homework"});
    schedules.press(RadioButton, "Always on");
    schedules.press(PushButton, "Create");
    EXPECT_TRUE(schedules.shows(Label, "Homework"));
    refresh();
    const ApplicationProcess app{home, {"--disable-server"}, "mousepad"};
    EXPECT_TRUE(blockScreenComes());
    EXPECT_TRUE(window("Stillgate").shows(Label, "Homework"));
}

TEST_F(DailySurfaces, dataCanBeTakenAlongAndTheAccountDeleted)
{
    start();
    const auto account = openTab("Account");
    account.press(PushButton, "Copy my data");
    EXPECT_TRUE(becomes([] {
        const auto data = nlohmann::json::parse(shell("xclip -out -selection clipboard 2>/dev/null"), nullptr, false);
        return data.is_object() && data.dump().contains("account-0@example.org");
    }));
    account.press(PushButton, "Delete account");
    EXPECT_TRUE(account.shows(Heading, "Delete your account?"));
    EXPECT_TRUE(hasAccount());
    account.press(PushButton, "Delete");
    EXPECT_TRUE(window("Sign In").comes());
    EXPECT_FALSE(hasAccount());
}

TEST_F(DailySurfaces, keyboardIsEnough)
{
    start();
    const auto settings = openSettings();
    settings.key("ctrl+t");
    EXPECT_TRUE(settings.shows(PushButton, "Create a task"));
    settings.key("ctrl+d");
    EXPECT_TRUE(settings.shows(Heading, "Overview"));

    settings.goTo(RadioButton, "Overview");
    settings.key("Down");
    EXPECT_TRUE(settings.isAt(RadioButton, "Streak"));
    EXPECT_TRUE(settings.shows(Heading, "Streak"));
    settings.key("Up");
    EXPECT_TRUE(settings.shows(Heading, "Overview"));

    settings.press(RadioButton, "Protection");
    for (const auto* opener : {"Add a rule", "Quick block"}) {
        settings.goTo(PushButton, opener);
        settings.key("Return");
        EXPECT_TRUE(settings.shows(PushButton, "Cancel"));
        settings.key("Escape");
        EXPECT_TRUE(settings.hides(PushButton, "Cancel"));
        EXPECT_TRUE(settings.isAt(PushButton, opener));
    }
}

} // namespace stillgate::test
