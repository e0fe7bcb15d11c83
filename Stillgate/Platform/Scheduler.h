#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace stillgate
{

/// A pending call. Destroying it takes the call back, also from within the call itself.
class Timer
{
public:
    virtual ~Timer() = default;
};

/// Calls on the main thread, later. The only source of timers: no other code makes one.
class Scheduler
{
public:
    virtual ~Scheduler() = default;

    using Action = std::function<void()>;

    [[nodiscard]] virtual std::unique_ptr<Timer> once(std::chrono::milliseconds delay, Action action) = 0;

    /// The first call comes one period from now.
    [[nodiscard]] virtual std::unique_ptr<Timer> repeating(std::chrono::milliseconds period, Action action) = 0;
};

} // namespace stillgate
