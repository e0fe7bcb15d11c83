#pragma once

#include <QString>

#include <cstdint>

namespace stillgate
{

/// "0h 20m".
[[nodiscard]] inline QString hoursAndMinutes(std::int64_t minutes)
{
    return QString{"%1h %2m"}.arg(minutes / 60).arg(minutes % 60);
}

/// "59m", "1h 0m".
[[nodiscard]] inline QString formatMinutes(std::int64_t minutes)
{
    return minutes < 60 ? QString{"%1m"}.arg(minutes) : hoursAndMinutes(minutes);
}

} // namespace stillgate
