#include "Report.h"

#include <algorithm>
#include <array>
#include <iomanip>
#include <sstream>

namespace stillgate
{

namespace
{

std::string fixed(double number, int decimals)
{
    std::ostringstream text;
    text << std::fixed << std::setprecision(decimals) << number;
    return text.str();
}

std::string timeText(Seconds time)
{
    if (time.count() < 1e-3)
        return fixed(time.count() * 1e6, 1) + " us";
    return fixed(time.count() * 1e3, 1) + " ms";
}

std::string amountText(const Amount& amount)
{
    return fixed(amount.number, amount.number < 10 ? 2 : 1) + ' ' + amount.unit;
}

} // namespace

void Report::add(std::string what, Seconds measured, const std::optional<Yardstick>& yardstick)
{
    m_rows.push_back({
        .what = std::move(what),
        .measured = timeText(measured),
        .yardstick = yardstick ? yardstick->name + ", " + timeText(yardstick->time) : "-",
        .ratio = yardstick ? fixed(measured / yardstick->time, 2) : "-",
    });
}

void Report::add(std::string what, const Amount& measured, const std::optional<AmountYardstick>& yardstick)
{
    m_rows.push_back({
        .what = std::move(what),
        .measured = amountText(measured),
        .yardstick = yardstick ? yardstick->name + ", " + amountText({yardstick->number, measured.unit}) : "-",
        .ratio = yardstick ? fixed(measured.number / yardstick->number, 2) : "-",
    });
}

void Report::skip(std::string_view what, std::string_view reason)
{
    m_remarks.push_back(std::string{what}.append(": skipped, ").append(reason));
}

void Report::fail(std::string_view what, std::string_view reason)
{
    m_remarks.push_back(std::string{what}.append(": failed, ").append(reason));
    m_hasFailures = true;
}

void Report::print(std::ostream& stream) const
{
    const Row head{"what", "measured (median)", "limit or peer", "ratio"};
    std::array<std::size_t, 3> widths{head.what.size(), head.measured.size(), head.yardstick.size()};
    for (const auto& row : m_rows) {
        widths[0] = std::max(widths[0], row.what.size());
        widths[1] = std::max(widths[1], row.measured.size());
        widths[2] = std::max(widths[2], row.yardstick.size());
    }

    const auto width = [&](std::size_t column) { return std::setw(static_cast<int>(widths.at(column))); };
    const auto printRow = [&](const Row& row) {
        stream << std::left << width(0) << row.what << " | " << std::right << width(1) << row.measured << " | "
               << std::left << width(2) << row.yardstick << " | " << std::right << std::setw(5) << row.ratio << "\n";
    };
    stream << "\n";
    printRow(head);
    std::ranges::for_each(m_rows, printRow);
    for (const auto& remark : m_remarks)
        stream << remark << "\n";
}

} // namespace stillgate
