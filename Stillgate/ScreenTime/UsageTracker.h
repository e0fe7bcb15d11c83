#pragma once

#include "Platform/Task.h"

#include <cstdint>
#include <map>
#include <string>

namespace stillgate
{

/// Meters the time that apps spend in front.
class UsageTracker
{
public:
    using AppUsage = std::map<std::string, std::int64_t>; ///< seconds, by bundle identifier

    virtual ~UsageTracker() = default;

    /// A second start does nothing.
    virtual void startTracking() = 0;
    virtual void stopTracking() = 0;

    /// Minutes of screen time up to this moment, of the day that it belongs to: never those of a day that has ended.
    [[nodiscard]] virtual std::int64_t minutesToday() = 0;

    /// The same by app.
    [[nodiscard]] virtual AppUsage usageToday() = 0;

    /// Sends the day in detail; a failure to is no concern of the caller.
    [[nodiscard]] virtual Task<> reportToBackend() = 0;
};

} // namespace stillgate
