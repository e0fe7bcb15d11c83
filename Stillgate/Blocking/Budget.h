#pragma once

#include "Models/ScreenTime.h"

#include <cstdint>
#include <optional>

namespace stillgate
{

/// What today's allowance means for the monitor.
struct BudgetState
{
    static constexpr std::int64_t noLimit = -1;

    bool exceeded = false;
    std::int64_t remainingMinutes = noLimit; ///< may be negative when exceeded

    bool operator==(const BudgetState&) const = default;
};

[[nodiscard]] BudgetState budgetState(const std::optional<ScreenTimeBudget>& budget);

} // namespace stillgate
