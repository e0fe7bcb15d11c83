#include "SettingsContent.h"

#include "DomainGenerator.h"
#include "tests/shots/Stage.h"

#include <array>
#include <utility>

namespace stillgate
{

namespace
{

std::vector<SGTask> tasks()
{
    static constexpr std::array statuses{"pending", "completed", "approved", "rejected"};
    std::vector<SGTask> all;
    for (std::size_t number = 0; number < 50; ++number)
        all.push_back({.id = std::to_string(number),
            .title = "Read chapter " + std::to_string(number),
            .rewardMinutes = 30,
            .requiresProof = number % 3 == 0,
            .status = statuses.at(number % statuses.size()),
            .assignerName = "Ada"});
    return all;
}

ScreenTimeReport month()
{
    ScreenTimeReport report{.totalMinutes = 5'400, .avgDailyMinutes = 180, .totalPickups = 1'312};
    for (int day = 1; day <= 30; ++day)
        report.days.push_back(
            {.date = (day < 10 ? "2026-01-0" : "2026-01-") + std::to_string(day), .totalMinutes = 100 + day % 7 * 25});
    auto& today = report.days.back();
    today.categoryTotals = {{"social_media", 96}, {"streaming", 64}, {"gaming", 31}, {"news", 12}};
    today.appUsage.emplace();
    for (int app = 0; app < 20; ++app)
        today.appUsage->push_back({.identifier = "org.example.app" + std::to_string(app), .minutes = 130 - 6 * app});
    return report;
}

std::vector<SGDevice> devices()
{
    static constexpr std::array platforms{"macos", "ios", "windows", "chrome"};
    std::vector<SGDevice> all;
    for (std::size_t number = 0; number < 20; ++number)
        all.push_back({.id = std::to_string(number),
            .deviceName = "Device " + std::to_string(number),
            .platform = platforms.at(number % platforms.size()),
            .isActive = number % 2 == 0});
    return all;
}

std::vector<BlockSchedule> schedules()
{
    std::vector<BlockSchedule> all;
    for (int number = 0; number < 20; ++number)
        all.push_back({.id = std::to_string(number),
            .name = "Homework " + std::to_string(number),
            .scheduleType = "recurring",
            .days = std::vector<std::string>{"mon", "tue", "wed"},
            .startTime = "15:00",
            .endTime = "18:00",
            .enabled = true});
    return all;
}

std::vector<GroupDashboardEntry> members()
{
    std::vector<GroupDashboardEntry> all;
    for (int number = 0; number < 6; ++number)
        all.push_back({.userId = std::to_string(number),
            .displayName = "Member " + std::to_string(number),
            .role = number < 2 ? "guardian" : "member",
            .streak = 12 * number,
            .activeRules = 3,
            .screenTimeToday = 59});
    return all;
}

} // namespace

std::vector<BlockRule> mixedRules(int count)
{
    static constexpr std::array categories{"social_media", "gaming", "streaming", "shopping", "news", "custom"};
    static constexpr std::array policies{"flexible", "permanent", "cooldown", "timed", "group_approval"};
    DomainGenerator domains;
    std::vector<BlockRule> rules;
    for (std::size_t number = 0; std::cmp_less(number, count); ++number) {
        auto& rule = rules.emplace_back(customRule(std::to_string(number), domains.take(5)));
        rule.category = categories.at(number % categories.size());
        rule.customName = "What keeps me from work, part " + std::to_string(number);
        rule.unblockPolicy = policies.at(number % policies.size());
    }
    return rules;
}

void putContent(test::Stage& stage)
{
    stage.signIn();
    stage.monitor.isMonitoring = true;
    stage.state.streak = Streak{.currentStreakDays = 128, .longestStreakDays = 128};
    stage.state.budget = ScreenTimeBudget{.dailyLimitMinutes = 90, .earnedMinutesToday = 15, .usedMinutesToday = 62};
    stage.state.blockRules = mixedRules(50);
    stage.state.tasks = tasks();
    stage.state.devices = devices();
    stage.state.schedules = schedules();
    stage.backend.tasks.insert_or_assign("assignee", tasks());
    stage.backend.tasks.insert_or_assign("assigner", tasks());
    stage.backend.reports["week"] = month(); // the period that the tab opens with
    stage.backend.group = members();
}

} // namespace stillgate
