#pragma once

#include "Blocking/AppMonitor.h"
#include "Platform/Clock.h"
#include "Platform/Scheduler.h"

#include <QProperty>
#include <QString>

#include <functional>
#include <memory>

namespace stillgate
{

/// What a screen tells of the quick block that runs, up to the second.
class QuickBlockStatus
{
public:
    /// `onChange` is called when what it tells is different.
    QuickBlockStatus(AppMonitor& monitor, const Clock& clock, Scheduler& scheduler, std::function<void()> onChange);

    /// False also for the moment in which one is over and hasn't been ended yet.
    [[nodiscard]] bool isRunning() const;

    [[nodiscard]] qint64 appCount() const;

    /// Full minutes; the last one counts as none.
    [[nodiscard]] qint64 minutesLeft() const;

    /// "2 Apps · 14m Remaining".
    [[nodiscard]] QString text() const;

    /// The same within a sentence: "2 apps · 14m remaining".
    [[nodiscard]] QString textInLowerCase() const;

private:
    [[nodiscard]] QString textWith(const QString& apps, const QString& remaining) const;
    void follow();
    void notice();

    AppMonitor& m_monitor;
    const Clock& m_clock;
    Scheduler& m_scheduler;
    std::function<void()> m_onChange;
    QString m_told;
    std::unique_ptr<Timer> m_timer; ///< while one runs
    QPropertyNotifier m_notifier;
};

} // namespace stillgate
