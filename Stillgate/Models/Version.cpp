#include "Models/Version.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <optional>
#include <ranges>
#include <vector>

namespace stillgate
{

namespace
{

std::optional<std::int64_t> wholeNumber(std::string_view text)
{
    if (text.starts_with('+') && !text.starts_with("+-"))
        text.remove_prefix(1);
    std::int64_t value = 0;
    const char* const end = text.data() + text.size();
    const auto [read, problem] = std::from_chars(text.data(), end, value);
    return problem == std::errc{} && read == end ? std::optional{value} : std::nullopt;
}

std::vector<std::int64_t> numbers(std::string_view version)
{
    std::vector<std::int64_t> values;
    for (const auto piece : std::views::split(version, '.')) {
        if (const auto value = wholeNumber(std::string_view{piece}))
            values.push_back(*value);
    }
    return values;
}

} // namespace

bool isVersion(std::string_view a, std::string_view lessThanB)
{
    auto left = numbers(a);
    auto right = numbers(lessThanB);
    const auto length = std::max(left.size(), right.size());
    left.resize(length);
    right.resize(length);
    return left < right;
}

} // namespace stillgate
