#include "Views/Popover/PopoverViewModel.h"

#include "App/Shortcuts.h"
#include "DesignSystem/Tokens.h"
#include "Views/Common/Follow.h"
#include "Views/Common/Minutes.h"
#include "Views/Common/TextOf.h"

#include <algorithm>

namespace stillgate
{

using namespace std::chrono_literals;

namespace
{

/// Until the tab is there and listens.
constexpr auto untilTabListens = 300ms;
constexpr std::int64_t littleTime = 30; // minutes

constexpr auto quickBlockKey = "Ctrl+B";
constexpr auto refreshKey = "Ctrl+R";
constexpr auto quitKey = "Ctrl+Q";

QColor colorOfRemaining(std::int64_t minutes)
{
    if (minutes > littleTime)
        return tokens().sgSuccess;
    return minutes > 0 ? tokens().sgWarning : tokens().sgDanger;
}

QList<Figure> budgetStatuses(const ScreenTimeBudget& budget)
{
    const auto remaining = budget.dailyLimitMinutes + budget.earnedMinutesToday - budget.usedMinutesToday;
    QList<Figure> rows{{textOf("controller.remaining"), hoursAndMinutes(std::max<std::int64_t>(remaining, 0)),
        "hourglass", colorOfRemaining(remaining)}};
    if (budget.earnedMinutesToday > 0)
        rows.push_back({textOf("controller.earned"), QString{"+%1m"}.arg(budget.earnedMinutesToday), "gift.fill",
            tokens().sgSuccess});
    if (budget.pendingTaskCount > 0)
        rows.push_back({textOf("desktop.menuBar.pendingTasks"), QString::number(budget.pendingTaskCount), "checklist",
            tokens().sgWarning});
    return rows;
}

} // namespace

PopoverViewModel::PopoverViewModel(const PopoverServices& services)
    : m_services(services)
    , m_quickBlock(services.monitor, services.clock, services.scheduler, [this] { Q_EMIT changed(); })
{
    auto& session = services.session;
    m_notifiers = follow([this] { Q_EMIT changed(); }, session.isAuthenticated, session.isBlockingActive,
        session.isOffline, session.isStarting, session.streak, session.blockRules, session.budget, session.sharingCode,
        services.monitor.blockedAppAttempts);
    m_notifiers.push_back(session.isAuthenticated.addNotifier([this] { Q_EMIT actionsChanged(); }));
}

QString PopoverViewModel::statusText() const
{
    return textOf(isProtected() ? "common.active" : "common.inactive");
}

QList<Figure> PopoverViewModel::statuses() const
{
    const auto& session = m_services.session;
    const auto enabledRules = std::ranges::count(session.blockRules.value(), true, &BlockRule::enabled);
    QList<Figure> rows{
        {textOf("desktop.protection.title"), statusText(), "shield.fill",
            isProtected() ? tokens().sgSuccess : tokens().sgDanger},
        {textOf("desktop.menuBar.sitesShielded"), QString::number(m_services.monitor.blockedAppAttempts),
            "hand.raised.fill", tokens().sgAccent},
        {textOf("desktop.menuBar.activeRules"), QString::number(enabledRules), "lock.fill", tokens().sgAccent},
    };
    if (const auto& budget = session.budget.value())
        rows += budgetStatuses(*budget);
    return rows;
}

QString PopoverViewModel::sharingCode() const
{
    return QString::fromStdString(m_services.session.sharingCode.value().value_or(""));
}

double PopoverViewModel::budgetFraction() const
{
    const auto budget = m_services.session.budget.value().value_or(ScreenTimeBudget{});
    const auto total = std::max<std::int64_t>(budget.dailyLimitMinutes + budget.earnedMinutesToday, 1);
    return double(budget.usedMinutesToday) / double(total);
}

QList<PopoverAction> PopoverViewModel::actions() const
{
    const PopoverAction quit{"power", textOf("desktop.menuBar.quitApp"), quitKey, true};
    if (!isAuthenticated())
        return {quit};
    return {
        {"bolt.fill", textOf("desktop.quickBlock.title"), quickBlockKey},
        {"macwindow", textOf("desktop.menuBar.openDashboard"), "Ctrl+D"},
        {"checkmark.circle", textOf("desktop.menuBar.openTasks"), "Ctrl+T"},
        {"link", textOf("connections.title"), "Ctrl+L"},
        {"arrow.clockwise", textOf("controller.refresh"), refreshKey},
        quit,
    };
}

void PopoverViewModel::perform(const QString& keyHint)
{
    if (keyHint == quickBlockKey)
        openQuickBlock();
    else if (keyHint == refreshKey)
        m_services.refresh();
    else if (keyHint == quitKey)
        m_services.quit();
    else
        m_services.showSettings(); // on the tab that it shows
}

bool PopoverViewModel::performKey(const QString& letter)
{
    const auto all = actions();
    const auto keyHint = "Ctrl+" + letter;
    const bool isKnown =
        std::ranges::any_of(all, [&](const PopoverAction& action) { return action.keyHint == keyHint; });
    if (isKnown)
        perform(keyHint);
    return isKnown;
}

void PopoverViewModel::openQuickBlock()
{
    m_services.showSettings();
    m_services.notifications.post(sgNavigateToTab, {{"tab", settingstab::protection}});
    m_quickBlockSoon =
        m_services.scheduler.once(untilTabListens, [this] { m_services.notifications.post(sgShowQuickBlock); });
}

void PopoverViewModel::copyCode()
{
    m_services.pasteboard.setString(sharingCode().toStdString());
}

void PopoverViewModel::copyInviteLink()
{
    const auto site = m_services.bundle.infoValue("STILLGATE_WEB_SITE_URL").value_or("");
    m_services.pasteboard.setString(site + "/src/pages/auth/login.html?invite=" + sharingCode().toStdString());
}

} // namespace stillgate
