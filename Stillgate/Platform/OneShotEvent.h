#pragma once

#include "Platform/Scheduler.h"
#include "Platform/Task.h"

#include <chrono>
#include <coroutine>
#include <memory>
#include <utility>
#include <vector>

namespace stillgate
{

/// Something that happens once and that any number of coroutines can await: `co_await event`.
///
/// They go on in the order in which they came. The event has to outlive its waiters. Main thread only.
class OneShotEvent
{
public:
    [[nodiscard]] bool hasHappened() const { return m_happened; }

    /// The second and later calls do nothing.
    void happen()
    {
        m_happened = true;
        // A waiter may destroy the event; from here on only the local list is touched.
        for (const auto waiter : std::exchange(m_waiters, {}))
            waiter.resume();
    }

    bool await_ready() const noexcept { return m_happened; }

    void await_suspend(std::coroutine_handle<> waiter) { m_waiters.push_back(waiter); }

    void await_resume() const noexcept {}

private:
    bool m_happened = false;
    std::vector<std::coroutine_handle<>> m_waiters;
};

/// Waits for a task, but no longer than the limit; the task runs on behind it.
Task<> waitAtMost(Scheduler* scheduler, std::chrono::milliseconds limit, Task<> task);

/// Waits for a time.
Task<> waitFor(Scheduler* scheduler, std::chrono::milliseconds time);

} // namespace stillgate
