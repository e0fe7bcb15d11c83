#include "App/Shortcuts.h"

namespace stillgate
{

std::optional<Shortcut> shortcutFor(std::string_view characters)
{
    if (characters == "d")
        return Shortcut{settingstab::dashboard};
    if (characters == "t")
        return Shortcut{settingstab::tasks};
    if (characters == "l")
        return Shortcut{settingstab::groups};
    if (characters == "r")
        return Shortcut{};
    return std::nullopt;
}

} // namespace stillgate
