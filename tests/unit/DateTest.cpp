#include "Models/Date.h"

#include <gtest/gtest.h>

#include <cmath>

namespace stillgate
{

using namespace std::chrono_literals;

TEST(Date, readsEveryFormOfRFC3339)
{
    const Date noon = std::chrono::sys_days{std::chrono::year{2026} / 1 / 15} + 12h;

    const std::pair<const char*, Date> cases[] = {
        {"2026-01-15T12:00:00Z", noon},
        {"2026-01-15t12:00:00z", noon},
        {"2026-01-15T12:00:00.5Z", noon + 500ms},
        {"2026-01-15T12:00:00.123456789Z", noon + 123456us},
        {"2026-01-15T15:00:00+03:00", noon},
        {"2026-01-14T23:30:00-12:30", noon},
        {"2026-01-15T11:59:60Z", noon},
    };

    for (const auto& [text, expected] : cases)
        EXPECT_EQ(dateFromISO8601(text), expected) << text;
}

TEST(Date, refusesEveryOtherForm)
{
    for (const auto* text : {"", "2026-01-15", "2026-01-15T12:00:00", "2026-01-15 12:00:00Z", "2026-1-15T12:00:00Z",
             "2026-02-30T12:00:00Z", "2026-13-01T12:00:00Z", "2026-00-01T12:00:00Z", "2026-01-15T24:00:00Z",
             "2026-01-15T12:60:00Z", "2026-01-15T12:00:00.Z", "2026-01-15T12:00:00+0300", "2026-01-15T12:00:00Zx",
             " 2026-01-15T12:00:00Z", "-026-01-15T12:00:00Z", "2026-01-15T-1:00:00Z", "0000-01-01T00:00:00+01:00"})
        EXPECT_EQ(dateFromISO8601(text), std::nullopt) << text;
}

TEST(Date, writesWholeSecondsInUTC)
{
    EXPECT_EQ(iso8601FromDate(*dateFromISO8601("2026-03-01T00:30:00.999+01:00")), "2026-02-28T23:30:00Z");
    EXPECT_EQ(iso8601FromDate(*dateFromISO8601("0000-01-01T00:00:00Z")), "0000-01-01T00:00:00Z");
    EXPECT_EQ(iso8601FromDate(*dateFromISO8601("1969-12-31T23:59:59.5Z")), "1969-12-31T23:59:59Z");
}

TEST(Date, secondsSince2001ReadBackAsTheyWereWritten)
{
    EXPECT_EQ(secondsSince2001(*dateFromISO8601("2001-01-01T00:00:00Z")), 0);
    for (const auto* text : {"2026-01-15T08:30:00.123456Z", "1970-01-01T00:00:00.000001Z", "9999-12-31T23:59:59Z"}) {
        const auto date = dateFromISO8601(text);
        EXPECT_EQ(dateFromSecondsSince2001(secondsSince2001(*date)), date) << text;
    }
    for (const double seconds : {std::nan(""), HUGE_VAL, -HUGE_VAL, 1e12, -1e12})
        EXPECT_EQ(dateFromSecondsSince2001(seconds), std::nullopt) << seconds;
}

} // namespace stillgate
