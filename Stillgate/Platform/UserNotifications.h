#pragma once

#include <string>

namespace stillgate
{

/// What the desktop itself tells the user, beside the windows of the program. Main thread only.
class UserNotifications
{
public:
    virtual ~UserNotifications() = default;

    /// Shows a notification at once, without a sound. Both texts are plain. Nobody learns what becomes of it: the
    /// desktop may have no place for it, and the user may have asked for quiet.
    virtual void post(const std::string& title, const std::string& body) = 0;
};

} // namespace stillgate
