#include "Measure.h"

#include <algorithm>

namespace stillgate
{

Seconds median(std::vector<Seconds> times)
{
    const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
    std::ranges::nth_element(times, middle);
    if (times.size() % 2 == 1)
        return *middle;
    return (*middle + *std::ranges::max_element(times.begin(), middle)) / 2;
}

} // namespace stillgate
