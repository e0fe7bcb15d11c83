#pragma once

#include "Views/Settings/TabScreen.h"
#include "Views/Windows/WindowServices.h"

namespace stillgate
{

/// The screen of a tab of the settings window; nothing for a tag that none has.
[[nodiscard]] TabScreen makeSettingsTab(int tag, const WindowServices& services);

} // namespace stillgate
