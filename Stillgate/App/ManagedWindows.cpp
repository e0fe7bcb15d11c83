#include "App/ManagedWindows.h"

#include <algorithm>
#include <array>

namespace stillgate
{

namespace
{

constexpr std::array<WindowDescription, 4> windowTable{{
    {windowid::onboarding, "Stillgate Setup", 520, 680},
    {windowid::auth, "Sign In", 520, 620},
    {windowid::maintenance, "Maintenance", 520, 520},
    {windowid::forceUpdate, "Update Required", 520, 560},
}};

} // namespace

void ManagedWindows::open(std::string_view id)
{
    if (const auto known = m_windows.find(id); known != m_windows.end() && known->second->isVisible()) {
        known->second->bringToFront();
        return;
    }
    const auto* description = std::ranges::find(windowTable, id, &WindowDescription::id);
    if (description == windowTable.end())
        return;
    close(id); // one that the user has closed
    auto window = m_factory.makeWindow(*description);
    if (!window)
        return;
    window->bringToFront();
    m_windows.emplace(id, std::move(window));
}

void ManagedWindows::close(std::string_view id)
{
    if (const auto known = m_windows.find(id); known != m_windows.end())
        m_windows.erase(known);
}

bool ManagedWindows::bringToFront()
{
    bool isAnyVisible = false;
    for (const auto& [id, window] : m_windows) {
        if (!window->isVisible())
            continue;
        window->bringToFront();
        isAnyVisible = true;
    }
    return isAnyVisible;
}

} // namespace stillgate
