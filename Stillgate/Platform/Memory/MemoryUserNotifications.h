#pragma once

#include "Platform/UserNotifications.h"

#include <string>
#include <vector>

namespace stillgate
{

class MemoryUserNotifications final : public UserNotifications
{
public:
    struct Notification
    {
        std::string title;
        std::string body;

        bool operator==(const Notification&) const = default;
    };

    void post(const std::string& title, const std::string& body) override { posted.push_back({title, body}); }

    std::vector<Notification> posted;
};

} // namespace stillgate
