#pragma once

#include "Platform/Observers.h"

#include <cstdint>
#include <functional>
#include <memory>

namespace stillgate
{

/// Where our windows stand among those of other apps. Main thread only.
class WindowStacking
{
public:
    virtual ~WindowStacking() = default;

    /// Until the observation ends, the window, by its number on this desktop, is above all others and has the keyboard:
    /// whatever comes above it or takes the keyboard is below it again within 200 ms. A screen that is locked stays
    /// locked: what locks it may stand above. Afterwards the window that the desktop has made active gets the keyboard.
    /// `lost` is called when somebody else has destroyed the window.
    [[nodiscard]] virtual std::unique_ptr<Observation> keepInFront(
        std::uintptr_t window, std::function<void()> lost) = 0;

    /// Whether a window may be translucent on this desktop, now.
    [[nodiscard]] virtual bool isComposited() const = 0;
};

} // namespace stillgate
