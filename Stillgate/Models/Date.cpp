#include "Models/Date.h"

#include <charconv>
#include <cstdio>

namespace stillgate
{

using namespace std::chrono_literals;

namespace
{

constexpr Date reference2001 = std::chrono::sys_days{std::chrono::year{2001} / 1 / 1};
constexpr Date firstDate = std::chrono::sys_days{std::chrono::year{0} / 1 / 1};
constexpr Date endOfDates = std::chrono::sys_days{std::chrono::year{10000} / 1 / 1};

/// Reads a text from left to right; the first thing that is not as expected makes the whole reading fail.
class Scanner
{
public:
    explicit Scanner(std::string_view text)
        : m_rest(text)
    {}

    /// Exactly `count` decimal digits, with a value of at most `most`.
    int number(std::size_t count, int most)
    {
        int value = 0;
        const auto digits = take(count);
        const auto [end, problem] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
        const bool whole = problem == std::errc{} && end == digits.data() + digits.size();
        m_failed |= !whole || digits.size() != count || digits.starts_with('-') || value > most;
        return value;
    }

    void expect(std::string_view accepted)
    {
        const auto next = take(1);
        m_failed |= next.empty() || !accepted.contains(next.front());
    }

    bool accept(char character)
    {
        const bool there = m_rest.starts_with(character);
        m_rest.remove_prefix(there ? 1 : 0);
        return there;
    }

    std::string_view takeDigits()
    {
        const auto digits = m_rest.substr(0, m_rest.find_first_not_of("0123456789"));
        m_failed |= digits.empty();
        m_rest.remove_prefix(digits.size());
        return digits;
    }

    [[nodiscard]] bool succeeded() const { return !m_failed && m_rest.empty(); }

private:
    std::string_view take(std::size_t count)
    {
        const auto taken = m_rest.substr(0, count);
        m_rest.remove_prefix(taken.size());
        return taken;
    }

    std::string_view m_rest;
    bool m_failed = false;
};

std::chrono::microseconds fraction(std::string_view digits)
{
    std::chrono::microseconds sum{0};
    std::chrono::microseconds weight = 100ms;
    for (const char digit : digits.substr(0, 6)) {
        sum += (digit - '0') * weight;
        weight /= 10;
    }
    return sum;
}

std::chrono::minutes zoneOffset(Scanner& scanner)
{
    if (scanner.accept('Z') || scanner.accept('z'))
        return 0min;
    const bool west = scanner.accept('-');
    if (!west)
        scanner.expect("+");
    const std::chrono::minutes offset = std::chrono::hours{scanner.number(2, 23)};
    scanner.expect(":");
    const auto minutes = std::chrono::minutes{scanner.number(2, 59)};
    return west ? -(offset + minutes) : offset + minutes;
}

bool isInRange(Date date)
{
    return date >= firstDate && date < endOfDates;
}

} // namespace

std::optional<Date> dateFromISO8601(std::string_view text)
{
    Scanner scanner{text};
    const auto year = std::chrono::year{scanner.number(4, 9999)};
    scanner.expect("-");
    const auto month = std::chrono::month(static_cast<unsigned>(scanner.number(2, 12)));
    scanner.expect("-");
    const auto day = std::chrono::day(static_cast<unsigned>(scanner.number(2, 31)));
    scanner.expect("Tt");
    const auto hours = std::chrono::hours{scanner.number(2, 23)};
    scanner.expect(":");
    const auto minutes = std::chrono::minutes{scanner.number(2, 59)};
    scanner.expect(":");
    const auto seconds = std::chrono::seconds{scanner.number(2, 60)}; // 60: a leap second, which counts as the next
    const auto subsecond = scanner.accept('.') ? fraction(scanner.takeDigits()) : 0us;
    const auto offset = zoneOffset(scanner);
    if (!scanner.succeeded() || !(year / month / day).ok())
        return std::nullopt;
    const Date date = std::chrono::sys_days{year / month / day} + hours + minutes + seconds + subsecond - offset;
    return isInRange(date) ? std::optional{date} : std::nullopt;
}

std::string iso8601FromDate(Date date)
{
    const auto midnight = std::chrono::floor<std::chrono::days>(date);
    const std::chrono::year_month_day day{midnight};
    const std::chrono::hh_mm_ss time{std::chrono::floor<std::chrono::seconds>(date - midnight)};
    char text[sizeof "9999-12-31T23:59:59Z"];
    std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02u:%02u:%02uZ", static_cast<int>(day.year()) % 10000,
        static_cast<unsigned>(day.month()) % 100, static_cast<unsigned>(day.day()) % 100,
        static_cast<unsigned>(time.hours().count()) % 100, static_cast<unsigned>(time.minutes().count()) % 100,
        static_cast<unsigned>(time.seconds().count()) % 100);
    return text;
}

std::optional<Date> dateFromSecondsSince2001(double seconds)
{
    const std::chrono::duration<double> sinceReference{seconds};
    const bool inRange = sinceReference >= firstDate - reference2001 && sinceReference < endOfDates - reference2001;
    if (!inRange) // also true for NaN
        return std::nullopt;
    return reference2001 + std::chrono::round<std::chrono::microseconds>(sinceReference);
}

double secondsSince2001(Date date)
{
    return std::chrono::duration<double>{date - reference2001}.count();
}

} // namespace stillgate
