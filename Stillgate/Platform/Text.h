#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace stillgate
{

inline constexpr std::string_view whiteSpace = " \t\n\v\f\r";

/// The text without these characters at its ends.
[[nodiscard]] inline std::string_view trimmed(std::string_view text, std::string_view characters = whiteSpace)
{
    const auto first = text.find_first_not_of(characters);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(characters) - first + 1);
}

/// One line that steers no terminal: what is no character that can be seen becomes a blank. For a text that comes from
/// a server, a file or another program.
[[nodiscard]] inline std::string onOneLine(std::string_view text)
{
    std::string line{text};
    std::ranges::replace_if(line, [](unsigned char character) { return character < ' ' || character == 0x7f; }, ' ');
    return line;
}

} // namespace stillgate
