#pragma once

#include "Platform/Observers.h"

#include <map>
#include <string>
#include <string_view>

namespace stillgate
{

/// Tells parts of the program, which don't know each other, what has happened. Main thread only.
class NotificationCenter
{
public:
    /// The observer is called for every later post of the name, from within the post.
    [[nodiscard]] std::unique_ptr<Observation> observe(std::string_view name, Observers::Observer observer)
    {
        return m_observers[std::string{name}].add(std::move(observer));
    }

    void post(std::string_view name)
    {
        if (const auto found = m_observers.find(name); found != m_observers.end())
            found->second.notify();
    }

private:
    std::map<std::string, Observers, std::less<>> m_observers;
};

/// A token refresh failed: the session is over.
inline constexpr std::string_view sgForceLogout = "sgForceLogout";
/// The backend's certificate matches no pin.
inline constexpr std::string_view sgCertificatePinningFailed = "sgCertificatePinningFailed";

} // namespace stillgate
