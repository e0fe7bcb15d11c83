#pragma once

#include "Measure.h"

#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace stillgate
{

/// What a measured time is held against: a budget, or the time of a peer that does comparable work.
struct Yardstick
{
    std::string name;
    Seconds time;
};

/// What is no time, in a unit of its own.
struct Amount
{
    double number;
    std::string unit;
};

/// In the unit of what is held against it.
struct AmountYardstick
{
    std::string name;
    double number;
};

/// The table at the end of a run. Times are told, never judged; only what couldn't be measured counts as
/// failed.
class Report
{
public:
    void add(std::string what, Seconds measured, const std::optional<Yardstick>& yardstick = std::nullopt);

    void add(std::string what, const Amount& measured, const std::optional<AmountYardstick>& yardstick = std::nullopt);

    /// A row that can't be measured here.
    void skip(std::string_view what, std::string_view reason);

    /// A row that could not be measured though it should.
    void fail(std::string_view what, std::string_view reason);

    [[nodiscard]] bool hasFailures() const { return m_hasFailures; }

    void print(std::ostream& stream) const;

private:
    struct Row
    {
        std::string what;
        std::string measured;
        std::string yardstick;
        std::string ratio;
    };

    std::vector<Row> m_rows;
    std::vector<std::string> m_remarks;
    bool m_hasFailures = false;
};

} // namespace stillgate
