#include "Blocking/Budget.h"

#include <limits>

namespace stillgate
{

namespace
{

using Limits = std::numeric_limits<std::int64_t>;

// A server may send any 64-bit number; a sum that leaves the range stays at its end.
std::int64_t saturatingAdd(std::int64_t a, std::int64_t b)
{
    std::int64_t sum = 0;
    if (!__builtin_add_overflow(a, b, &sum))
        return sum;
    return a > 0 ? Limits::max() : Limits::min();
}

std::int64_t saturatingSubtract(std::int64_t a, std::int64_t b)
{
    std::int64_t difference = 0;
    if (!__builtin_sub_overflow(a, b, &difference))
        return difference;
    return a >= 0 ? Limits::max() : Limits::min();
}

} // namespace

BudgetState budgetState(const std::optional<ScreenTimeBudget>& budget)
{
    if (!budget || budget->dailyLimitMinutes <= 0)
        return {};
    const auto allowed = saturatingAdd(budget->dailyLimitMinutes, budget->earnedMinutesToday);
    const auto remaining = saturatingSubtract(allowed, budget->usedMinutesToday);
    return {.exceeded = remaining < 1, .remainingMinutes = remaining};
}

} // namespace stillgate
