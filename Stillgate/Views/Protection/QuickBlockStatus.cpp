#include "Views/Protection/QuickBlockStatus.h"

#include "Views/Common/TextOf.h"

#include <algorithm>

namespace stillgate
{

using namespace std::chrono_literals;

QuickBlockStatus::QuickBlockStatus(
    AppMonitor& monitor, const Clock& clock, Scheduler& scheduler, std::function<void()> onChange)
    : m_monitor(monitor)
    , m_clock(clock)
    , m_scheduler(scheduler)
    , m_onChange(std::move(onChange))
    , m_notifier(monitor.activeQuickBlock.addNotifier([this] {
        follow();
        notice();
    }))
{
    follow();
    m_told = text();
}

bool QuickBlockStatus::isRunning() const
{
    const auto& session = m_monitor.activeQuickBlock.value();
    return session && m_clock.now() < session->expiresAt;
}

qint64 QuickBlockStatus::appCount() const
{
    const auto& session = m_monitor.activeQuickBlock.value();
    return session ? std::ssize(session->bundleIds) : 0;
}

qint64 QuickBlockStatus::minutesLeft() const
{
    if (!isRunning())
        return 0;
    const auto left = m_monitor.activeQuickBlock.value()->expiresAt - m_clock.now();
    return std::chrono::duration_cast<std::chrono::minutes>(left).count();
}

QString QuickBlockStatus::text() const
{
    return textWith(textOf("desktop.quickBlock.apps"), textOf("controller.remaining"));
}

QString QuickBlockStatus::textInLowerCase() const
{
    return textWith(lowerCaseTextOf("desktop.quickBlock.apps"), lowerCaseTextOf("controller.remaining"));
}

QString QuickBlockStatus::textWith(const QString& apps, const QString& remaining) const
{
    if (!isRunning())
        return {};
    return QString{"%1 %2 · %3m %4"}.arg(appCount()).arg(apps).arg(minutesLeft()).arg(remaining);
}

void QuickBlockStatus::follow()
{
    if (m_monitor.activeQuickBlock.value())
        m_timer = m_scheduler.repeating(1s, [this] { notice(); });
    else
        m_timer.reset();
}

void QuickBlockStatus::notice()
{
    if (m_told == text())
        return;
    m_told = text();
    m_onChange();
}

} // namespace stillgate
