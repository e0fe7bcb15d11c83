#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace stillgate
{

/// An instant of the civil clock (UTC), to the microsecond, between the years 0 and 9999.
using Date = std::chrono::sys_time<std::chrono::microseconds>;

/// The instant that an RFC 3339 date-time names, with or without fractional seconds; nothing for any other form.
/// Digits behind the microsecond are cut off.
[[nodiscard]] std::optional<Date> dateFromISO8601(std::string_view text);

/// "2026-01-15T08:30:00Z": RFC 3339 in UTC, whole seconds.
[[nodiscard]] std::string iso8601FromDate(Date date);

/// The instant a number of seconds after 2001-01-01 00:00:00 UTC; nothing outside the years of Date.
[[nodiscard]] std::optional<Date> dateFromSecondsSince2001(double seconds);

[[nodiscard]] double secondsSince2001(Date date);

} // namespace stillgate
