#pragma once

#include "Platform/Linux/Desktop/X11Connection.h"
#include "Platform/Scheduler.h"
#include "Platform/WindowStacking.h"

namespace stillgate
{

/// Stacking by the X server itself: a window that is kept in front has to be one that the window manager doesn't manage
/// (override-redirect). No shortcut of the desktop then closes it, puts it away or moves it, and it is on all virtual
/// desktops.
class X11WindowStacking final : public WindowStacking
{
public:
    explicit X11WindowStacking(Scheduler& scheduler)
        : m_scheduler(scheduler)
    {}

    [[nodiscard]] std::unique_ptr<Observation> keepInFront(std::uintptr_t window, std::function<void()> lost) override;
    [[nodiscard]] bool isComposited() const override;

private:
    Scheduler& m_scheduler;
    std::unique_ptr<X11Connection> m_connection = X11Connection::open();
};

} // namespace stillgate
