#pragma once

#include "Models/Date.h"

#include <chrono>

namespace stillgate
{

/// A point of the monotonic clock. It can't be compared with a Date, and that is the point of it.
using MonotonicTime = std::chrono::steady_clock::time_point;

/// What time it is. The only source of it: no other code asks the system.
class Clock
{
public:
    virtual ~Clock() = default;

    /// The civil time, which the user and the network can set back and forth.
    [[nodiscard]] virtual Date now() const = 0;

    /// Never goes back, and stands still while the machine is suspended.
    [[nodiscard]] virtual MonotonicTime monotonicNow() const = 0;
};

} // namespace stillgate
