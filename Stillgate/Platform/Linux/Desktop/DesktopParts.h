#pragma once

#include <string_view>

namespace stillgate
{

/// Whether an entry of the menu opens the desktop itself, and no app that runs on it: its file manager, panel or dock,
/// the way out of the session, its settings.
///
/// The desktop id comes without ".desktop"; case doesn't matter. The categories are those of the entry (Desktop Menu
/// Specification, appendix A): "Settings;DesktopSettings;".
[[nodiscard]] bool isPartOfDesktop(std::string_view desktopId, std::string_view categories);

} // namespace stillgate
