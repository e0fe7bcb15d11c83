#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace stillgate
{

/// The text with all that may not stand in the path of a URL percent-encoded (RFC 3986); a slash may.
[[nodiscard]] std::string pathEncoded(std::string_view text);

/// The path with a query of these names and values, each percent-encoded; without any, the path alone.
[[nodiscard]] std::string makePath(
    std::string path, const std::vector<std::pair<std::string_view, std::string>>& query);

} // namespace stillgate
