#pragma once

#include "Platform/Clock.h"

namespace stillgate
{

class LinuxClock final : public Clock
{
public:
    [[nodiscard]] Date now() const override
    {
        return std::chrono::time_point_cast<std::chrono::microseconds>(std::chrono::system_clock::now());
    }

    /// CLOCK_MONOTONIC, which doesn't count suspension (clock_gettime(2)).
    [[nodiscard]] MonotonicTime monotonicNow() const override { return std::chrono::steady_clock::now(); }
};

} // namespace stillgate
