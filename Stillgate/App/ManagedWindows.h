#pragma once

#include "App/Windows.h"

#include <map>
#include <string>

namespace stillgate
{

namespace windowid
{
inline constexpr std::string_view onboarding = "onboarding";
inline constexpr std::string_view auth = "auth";
inline constexpr std::string_view maintenance = "maintenance";
inline constexpr std::string_view forceUpdate = "force-update";
} // namespace windowid

/// The application's windows, one for an id at most.
class ManagedWindows
{
public:
    explicit ManagedWindows(WindowFactory& factory)
        : m_factory(factory)
    {}

    /// Brings the window to the front, and makes it first if there is none, or if the user has closed it. An id that
    /// isn't in the table opens nothing.
    void open(std::string_view id);

    void close(std::string_view id);

    /// Those on the screen to the front; false if there is none.
    bool bringToFront();

private:
    WindowFactory& m_factory;
    std::map<std::string, std::unique_ptr<Window>, std::less<>> m_windows;
};

} // namespace stillgate
