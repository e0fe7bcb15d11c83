#pragma once

#include <string>
#include <string_view>

namespace stillgate
{

/// The identifier that an app has on every computer of the account, so that a rule written on another one matches here.
///
/// The desktop id comes without ".desktop" ("firefox-esr"); case doesn't matter. One that the table doesn't know is its
/// own identifier, as it stands.
[[nodiscard]] std::string bundleIdentifierOf(std::string_view desktopId);

/// Whether the table knows it, be it installed or not.
[[nodiscard]] bool isKnownApp(std::string_view desktopId);

} // namespace stillgate
