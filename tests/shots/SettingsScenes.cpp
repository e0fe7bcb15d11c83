#include "Views/Account/AccountViewModel.h"
#include "tests/shots/Scene.h"
#include "tests/shots/Stage.h"

namespace stillgate::test
{

namespace
{

void emptyDashboard(Stage& stage)
{
    stage.state.isBlockingActive = false;
    stage.openTab(settingstab::dashboard);
}

void wholeDay(Stage& stage)
{
    stage.state.streak = Streak{.currentStreakDays = 128};
    stage.monitor.blockedAppAttempts = 14;
    stage.state.devices = std::vector{device("d1", "macos")};
    stage.state.budget = ScreenTimeBudget{.dailyLimitMinutes = 90, .earnedMinutesToday = 15, .usedMinutesToday = 62};
    stage.state.tasks = std::vector{task("t1", "Read for half an hour"), task("t2", "Take out the bins"),
        task("t3", "Write to grandmother, and tell her about the summer and everything that happened"),
        task("t4", "A fourth one")};
    stage.state.schedules = std::vector<BlockSchedule>{{.id = "s1",
        .name = "Deep work",
        .scheduleType = "recurring",
        .days = std::vector<std::string>{"mon", "tue"},
        .startTime = "09:00",
        .endTime = "17:00",
        .enabled = true}};
    stage.state.blockRules = std::vector{rule("r1", "social_media"), rule("r2", "gaming")};
    stage.openTab(settingstab::dashboard);
}

void showStreak(Stage& stage, Streak streak)
{
    stage.state.streak = std::move(streak);
    stage.openTab(settingstab::streak);
}

/// On a Thursday.
void threeDays(Stage& stage)
{
    showStreak(stage,
        {.currentStreakDays = 3,
            .longestStreakDays = 17,
            .streakStartDate = "2026-01-13",
            .lastActiveDate = "2026-01-15"});
}

void years(Stage& stage)
{
    stage.time.setCivilTime(Date{std::chrono::sys_days{std::chrono::year{2026} / 1 / 18}}); // a Sunday
    showStreak(stage,
        {.currentStreakDays = 12'345,
            .longestStreakDays = 12'345,
            .streakStartDate = "1992-04-01",
            .lastActiveDate = "2026-01-18T08:30:00.000+03:00"});
}

void withoutPictures(Stage& stage)
{
    stage.bundle.folder = "/nowhere";
    showStreak(stage, {.currentStreakDays = 14, .longestStreakDays = 14});
}

DailyScreenTime day(std::string date, std::int64_t minutes)
{
    return {.date = std::move(date), .totalMinutes = minutes};
}

void showReport(Stage& stage, ScreenTimeReport report)
{
    stage.backend.reports["week"] = std::move(report);
    stage.openTab(settingstab::screenTime);
}

void loadingReport(Stage& stage)
{
    stage.backend.hold("getScreenTimeReport week");
    stage.openTab(settingstab::screenTime);
}

void week(Stage& stage)
{
    ScreenTimeReport report{.totalMinutes = 1254, .avgDailyMinutes = 179, .totalPickups = 312};
    for (const auto& [date, minutes] : {std::pair{"2026-01-09", 0}, {"2026-01-10", 59}, {"2026-01-11", 305},
             {"2026-01-12", 221}, {"2026-01-13", 178}, {"2026-01-14", 256}, {"2026-01-15", 235}})
        report.days.push_back(day(date, minutes));
    auto& today = report.days.back();
    today.categoryTotals = {{"social_media", 96}, {"streaming", 64}, {"gaming", 31}, {"news", 12}};
    today.appUsage = {
        {.identifier = "org.mozilla.firefox", .name = "Firefox", .minutes = 121},
        {.identifier = "org.gnome.Totem", .name = "Videos", .minutes = 64},
        {.identifier = "org.example.chess", .minutes = 31},
    };
    showReport(stage, std::move(report));
}

/// Many categories, more apps than are shown, long names, more use than the day has, and dates of another form.
void much(Stage& stage)
{
    ScreenTimeReport report{.totalMinutes = 40'000, .avgDailyMinutes = 1'333, .totalPickups = 1'234'567};
    for (int at = 1; at <= 30; ++at)
        report.days.push_back(day("15 January", 48 * at));
    auto& today = report.days.back();
    today.categoryTotals.emplace();
    for (const auto* key : {"social_media", "gaming", "streaming", "gambling", "shopping", "news", "adult",
             "home_office_and_everything_else", "education", "other"})
        today.categoryTotals->emplace(key, 1'400 - 137 * std::ssize(*today.categoryTotals));
    today.appUsage.emplace();
    for (int at = 0; at < 14; ++at)
        today.appUsage->push_back({.identifier = "org.example.app" + std::to_string(at),
            .name = at % 3 == 0 ? std::optional<std::string>{"A program with a name that goes on for quite a while"}
                                : std::nullopt,
            .minutes = 1'500 - 110 * at});
    showReport(stage, std::move(report));
}

void loadingGroup(Stage& stage)
{
    stage.backend.hold("getGroupDashboard default");
    stage.openTab(settingstab::groups);
}

void family(Stage& stage)
{
    stage.backend.group = std::vector<GroupDashboardEntry>{
        {.userId = "1",
            .displayName = "Ada",
            .role = "guardian",
            .streak = 12,
            .activeRules = 3,
            .screenTimeToday = 59},
        {.userId = "2",
            .displayName = "A grandmother who likes to be called by each of her names",
            .role = "member",
            .streak = 12'345,
            .activeRules = 1'000,
            .screenTimeToday = 1'439},
        {.userId = "3", .role = "controlled"},
    };
    stage.openTab(settingstab::groups);
}

SGDevice namedDevice(const std::string& name, const std::string& platform, bool isActive)
{
    return {.id = name, .deviceName = name, .platform = platform, .isActive = isActive};
}

void everyDevice(Stage& stage)
{
    stage.state.devices = std::vector{
        namedDevice("Ada’s desk", "macos", true),
        namedDevice("Phone", "ios", true),
        namedDevice("The computer in the living room that everybody uses", "windows", false),
        namedDevice("Browser", "chrome", true),
        namedDevice("Refrigerator", "fridge", false),
    };
    stage.openTab(settingstab::devices);
}

AccountViewModel& openAccount(Stage& stage)
{
    return stage.openTab<AccountViewModel>(settingstab::account);
}

/// A failure, with a long address.
void failedExport(Stage& stage)
{
    auto& account = openAccount(stage);
    stage.state.currentUser = SGUser{.id = "u1",
        .email = "somebody.with.a.name.that.is.long@a-department-of.the-university-of.somewhere-far-away.example.org",
        .displayName = "Ada Lovelace"};
    account.exportData();
}

void workingAccount(Stage& stage)
{
    stage.backend.hold("exportUserData");
    stage.backend.hold("deleteAccount");
    auto& account = openAccount(stage);
    account.exportData();
    account.askToDelete();
    account.deleteAccount();
}

} // namespace

/// Of the tabs with a few states each.
std::vector<Scene> settingsScenes()
{
    return {
        {"dashboard", "empty", emptyDashboard},
        {"dashboard", "whole-day", wholeDay},
        {"streak", "none", [](Stage& stage) { showStreak(stage, {}); }},
        {"streak", "three-days", threeDays},
        {"streak", "years", years},
        {"streak", "without-pictures", withoutPictures},
        {"screen-time", "loading", loadingReport},
        {"screen-time", "none", [](Stage& stage) { stage.openTab(settingstab::screenTime); }},
        {"screen-time", "figures-alone",
            [](Stage& stage) { showReport(stage, {.totalMinutes = 59, .avgDailyMinutes = 8}); }},
        {"screen-time", "week", week},
        {"screen-time", "much", much},
        {"group", "loading", loadingGroup},
        {"group", "nobody", [](Stage& stage) { stage.openTab(settingstab::groups); }},
        {"group", "family", family},
        {"devices", "none", [](Stage& stage) { stage.openTab(settingstab::devices); }},
        {"devices", "every", everyDevice},
        {"account", "signed-in", [](Stage& stage) { openAccount(stage); }},
        {"account", "signed-out", [](Stage& stage) { stage.openSettings(settingstab::account); }},
        {"account", "failed", failedExport},
        {"account", "working", workingAccount},
        {"account", "deletion", [](Stage& stage) { openAccount(stage).askToDelete(); }},
        {"about", "web-site", [](Stage& stage) { stage.openTab(settingstab::about); }},
    };
}

} // namespace stillgate::test
