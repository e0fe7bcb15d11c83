#pragma once

#include "Models/Date.h"
#include "Models/Record.h"

#include <optional>
#include <string>
#include <vector>

namespace stillgate
{

/// A device of the account.
struct SGDevice
{
    std::string id;
    std::optional<std::string> userId;
    std::string deviceName;
    std::string platform; ///< "macos", "ios", "windows", "chrome"; unknown ones are carried along
    std::optional<std::string> osVersion;
    std::optional<std::string> appVersion;
    std::optional<Date> lastHeartbeatAt;
    bool isActive = false;
    std::optional<Date> createdAt;
    std::optional<Date> updatedAt;

    STILLGATE_RECORD(SGDevice, id, userId, deviceName, platform, osVersion, appVersion, lastHeartbeatAt, isActive,
        createdAt, updatedAt);
};

/// The id of the device that this program takes for its own: the first of its platform in the server's order.
[[nodiscard]] std::optional<std::string> ownDeviceId(const std::vector<SGDevice>& devices);

} // namespace stillgate
