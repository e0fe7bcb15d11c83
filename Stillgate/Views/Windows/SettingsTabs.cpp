#include "Views/Windows/SettingsTabs.h"

#include "Views/Devices/DevicesViewModel.h"
#include "Views/Windows/Screen.h"

namespace stillgate
{

TabScreen makeSettingsTab(int tag, const WindowServices& services)
{
    switch (tag) {
    case 8:
        return {addressOfScreen("Devices", "DevicesTab"), std::make_unique<DevicesViewModel>(services.state)};
    default:
        return {};
    }
}

} // namespace stillgate
