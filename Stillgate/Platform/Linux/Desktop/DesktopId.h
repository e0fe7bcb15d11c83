#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace stillgate
{

/// The form in which the ids of desktop entries, and what windows say of them, are compared. They are ASCII.
[[nodiscard]] inline std::string comparableDesktopId(std::string_view id)
{
    std::string lowered{id};
    std::ranges::transform(
        lowered, lowered.begin(), [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return lowered;
}

} // namespace stillgate
