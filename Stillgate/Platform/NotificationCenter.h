#pragma once

#include "Platform/Observers.h"

#include <map>
#include <string>
#include <string_view>

namespace stillgate
{

/// What a notification says beyond its name, by key.
using UserInfo = std::map<std::string, int, std::less<>>;

/// Tells parts of the program, which don't know each other, what has happened. Main thread only.
class NotificationCenter
{
public:
    /// The observer is called for every later post of the name, from within the post.
    [[nodiscard]] std::unique_ptr<Observation> observe(std::string_view name, std::function<void()> observer)
    {
        return observeWithInfo(name, [observer = std::move(observer)](const UserInfo&) { observer(); });
    }

    [[nodiscard]] std::unique_ptr<Observation> observeWithInfo(
        std::string_view name, Observers<UserInfo>::Observer observer)
    {
        return m_observers[std::string{name}].add(std::move(observer));
    }

    void post(std::string_view name, const UserInfo& info = {})
    {
        if (const auto found = m_observers.find(name); found != m_observers.end())
            found->second.notify(info);
    }

private:
    std::map<std::string, Observers<UserInfo>, std::less<>> m_observers;
};

/// A token refresh failed: the session is over.
inline constexpr std::string_view sgForceLogout = "sgForceLogout";
/// The backend's certificate matches no pin.
inline constexpr std::string_view sgCertificatePinningFailed = "sgCertificatePinningFailed";
/// The settings window is to show the tab whose tag is under "tab".
inline constexpr std::string_view sgNavigateToTab = "sgNavigateToTab";
/// The user wants to sign in.
inline constexpr std::string_view sgOpenAuthWindow = "sgOpenAuthWindow";
/// The user wants to set up a quick block; heard by the protection tab while it is shown.
inline constexpr std::string_view sgShowQuickBlock = "sgShowQuickBlock";

} // namespace stillgate
