#pragma once

#include "Platform/Clock.h"
#include "Platform/Scheduler.h"

#include <list>

namespace stillgate
{

/// Time that stands still until a test moves it: the clock and the timers that follow it.
class ManualTime final : public Clock, public Scheduler
{
public:
    [[nodiscard]] Date now() const override { return m_now; }

    [[nodiscard]] MonotonicTime monotonicNow() const override { return m_monotonicNow; }

    [[nodiscard]] std::unique_ptr<Timer> once(std::chrono::milliseconds delay, Action action) override;
    [[nodiscard]] std::unique_ptr<Timer> repeating(std::chrono::milliseconds period, Action action) override;

    /// Lets the time pass, with every call that falls due, each at its own moment.
    void advance(std::chrono::milliseconds span);

    /// Sets the civil clock alone, as a user does.
    void setCivilTime(Date now) { m_now = now; }

    [[nodiscard]] std::size_t pendingTimers() const { return m_entries.size(); }

private:
    struct Entry
    {
        MonotonicTime due;
        std::chrono::milliseconds period; ///< 0: once
        Action action;
    };
    class Handle;

    std::unique_ptr<Timer> add(std::chrono::milliseconds delay, std::chrono::milliseconds period, Action action);
    [[nodiscard]] std::shared_ptr<Entry> nextDueBefore(MonotonicTime end) const;
    void moveTo(MonotonicTime time);

    Date m_now = std::chrono::sys_days{std::chrono::year{2026} / 1 / 15} + std::chrono::hours{12};
    MonotonicTime m_monotonicNow;
    std::list<std::shared_ptr<Entry>> m_entries;
};

} // namespace stillgate
