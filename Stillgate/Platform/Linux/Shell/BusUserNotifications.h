#pragma once

#include "Platform/UserNotifications.h"

namespace stillgate
{

/// org.freedesktop.Notifications on the session bus (Desktop Notifications Specification 1.2). Without a bus, or with
/// nobody there who shows notifications, none is shown.
class BusUserNotifications final : public UserNotifications
{
public:
    void post(const std::string& title, const std::string& body) override;
};

} // namespace stillgate
