#include "Models/Devices.h"

#include "Models/BlockRules.h"

#include <algorithm>

namespace stillgate
{

std::optional<std::string> ownDeviceId(const std::vector<SGDevice>& devices)
{
    const auto own = std::ranges::find(devices, ownPlatform, &SGDevice::platform);
    return own == devices.end() ? std::nullopt : std::optional{own->id};
}

} // namespace stillgate
