#pragma once

#include "Platform/Scheduler.h"

namespace stillgate
{

/// Timers on Qt's event loop.
class LinuxScheduler final : public Scheduler
{
public:
    [[nodiscard]] std::unique_ptr<Timer> once(std::chrono::milliseconds delay, Action action) override;
    [[nodiscard]] std::unique_ptr<Timer> repeating(std::chrono::milliseconds period, Action action) override;
};

} // namespace stillgate
