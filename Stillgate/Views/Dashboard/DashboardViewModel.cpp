#include "Views/Dashboard/DashboardViewModel.h"

#include "App/Shortcuts.h"
#include "DesignSystem/Tokens.h"
#include "Views/Common/Follow.h"
#include "Views/Common/TextOf.h"
#include "Views/Tasks/TaskRows.h"

#include <algorithm>
#include <ranges>

namespace stillgate
{

namespace
{

constexpr std::size_t mostTasks = 3;
constexpr std::size_t mostSchedules = 3;
constexpr std::size_t mostRules = 5;

/// The first rows of those that are wanted.
template <class Row, class Records, class IsWanted, class RowOf>
QList<Row> firstRows(const Records& records, std::size_t most, IsWanted isWanted, RowOf rowOf)
{
    QList<Row> rows;
    for (const auto& record : records | std::views::filter(isWanted) | std::views::take(most))
        rows.push_back(rowOf(record));
    return rows;
}

bool isPending(const SGTask& task)
{
    return task.status == "pending";
}

bool isApproved(const SGTask& task)
{
    return task.status == "approved";
}

} // namespace

DashboardTaskRow dashboardTaskRow(const SGTask& task)
{
    const auto mark = taskMark(task.status);
    return {
        .id = QString::fromStdString(task.id),
        .symbol = mark.symbol,
        .color = mark.color,
        .title = QString::fromStdString(task.title),
        .reward = QString{"+%1m %2"}.arg(task.rewardMinutes).arg(textOf("common.reward")),
        .status = textOf(isPending(task) ? "common.inProgress" : "tasks." + task.status),
        .statusColor = isPending(task) ? tokens().sgWarning : tokens().sgSuccess,
    };
}

DashboardViewModel::DashboardViewModel(AppState& state, AppMonitor& monitor, NotificationCenter& notifications)
    : m_state(state)
    , m_monitor(monitor)
    , m_notifications(notifications)
    , m_notifiers(follow([this] { update(); }, state.isBlockingActive, state.budget, state.tasks, state.schedules,
          state.blockRules, state.streak, state.devices, monitor.blockedAppAttempts))
{
    update();
    runDetached(state.refreshData());
}

QString DashboardViewModel::statusName() const
{
    return textOf("desktop.protection.title") + ": " + textOf(isBlockingActive() ? "common.active" : "common.inactive");
}

QString DashboardViewModel::statusText() const
{
    return textOf(isBlockingActive() ? "dashboard.protectionsActive" : "desktop.protection.title");
}

QList<Figure> DashboardViewModel::figures() const
{
    const auto enabledRules = std::ranges::count(m_state.blockRules.value(), true, &BlockRule::enabled);
    const auto activeDevices = std::ranges::count(m_state.devices.value(), true, &SGDevice::isActive);
    const auto streakDays = QString::number(m_state.streak.value().currentStreakDays);
    return {
        {textOf("streak.title"), streakDays + ' ' + textOf("time.days"), "flame.fill", tokens().sgStreakFire},
        {textOf("blocks.blocking"), QString::number(m_monitor.blockedAppAttempts), "hand.raised.fill",
            tokens().sgAccent},
        {textOf("desktop.protection.title"), QString::number(enabledRules), "lock.fill", tokens().white},
        {textOf("devices.title"), QString::number(activeDevices), "laptopcomputer", tokens().sgSuccess},
    };
}

bool DashboardViewModel::hasLimit() const
{
    return budget().dailyLimitMinutes > 0;
}

QString DashboardViewModel::budgetText() const
{
    return QString{"%1m / %2m"}.arg(budget().usedMinutesToday).arg(minutesOfDay());
}

QString DashboardViewModel::earnedText() const
{
    return QString{"+%1m %2"}.arg(budget().earnedMinutesToday).arg(textOf("controller.earned"));
}

QString DashboardViewModel::usedText() const
{
    return QString{"%1m %2 / %3m"}.arg(budget().usedMinutesToday).arg(textOf("controller.used")).arg(minutesOfDay());
}

double DashboardViewModel::budgetFraction() const
{
    return double(budget().usedMinutesToday) / double(std::max<std::int64_t>(minutesOfDay(), 1));
}

QString DashboardViewModel::completedTasksText() const
{
    const auto count = std::ranges::count_if(m_state.tasks.value(), isApproved);
    return count > 0 ? counted(count, "common.completed") : QString{};
}

void DashboardViewModel::viewAllTasks()
{
    m_notifications.post(sgNavigateToTab, {{"tab", settingstab::tasks}});
}

void DashboardViewModel::update()
{
    const auto every = [](const auto&) { return true; };
    m_tasks.setRows(firstRows<DashboardTaskRow>(m_state.tasks.value(), mostTasks, isPending, dashboardTaskRow));
    m_schedules.setRows(
        firstRows<ScheduleRow>(m_state.schedules.value(), mostSchedules, &BlockSchedule::enabled, scheduleRow));
    m_rules.setRows(firstRows<RuleRow>(m_state.blockRules.value(), mostRules, every, [this](const BlockRule& rule) {
        return ruleRow(rule, m_state.domainsOfCategory(rule.category.value_or("")));
    }));
    Q_EMIT changed();
}

ScreenTimeBudget DashboardViewModel::budget() const
{
    return m_state.budget.value().value_or(ScreenTimeBudget{});
}

std::int64_t DashboardViewModel::minutesOfDay() const
{
    return budget().dailyLimitMinutes + budget().earnedMinutesToday;
}

} // namespace stillgate
