#pragma once

#include <optional>
#include <string_view>

namespace stillgate
{

/// Tags of the settings window's tabs. 5 and 9 are those of screens to come.
namespace settingstab
{
inline constexpr int dashboard = 0;
inline constexpr int streak = 1;
inline constexpr int screenTime = 2;
inline constexpr int protection = 3;
inline constexpr int schedules = 4;
inline constexpr int tasks = 6;
inline constexpr int groups = 7;
inline constexpr int devices = 8;
inline constexpr int account = 10;
inline constexpr int about = 11;
} // namespace settingstab

/// What a key with the command modifier (Control on this keyboard) does while the application is active.
struct Shortcut
{
    std::optional<int> opensTab; ///< nothing: the session is refreshed
};

/// `characters` is what the key types with every modifier but Shift and Caps Lock left aside: those make it another
/// character, which is no shortcut. Nothing for a key that is passed on.
[[nodiscard]] std::optional<Shortcut> shortcutFor(std::string_view characters);

} // namespace stillgate
