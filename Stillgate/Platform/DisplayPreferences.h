#pragma once

#include "Platform/Observers.h"

#include <functional>
#include <memory>

namespace stillgate
{

/// What the user has asked of everything that draws on this desktop. Main thread only.
class DisplayPreferences
{
public:
    virtual ~DisplayPreferences() = default;

    /// Nothing is to move for its own sake. False where the desktop has no such setting.
    [[nodiscard]] virtual bool shouldReduceMotion() const = 0;

    [[nodiscard]] virtual std::unique_ptr<Observation> onChange(std::function<void()> observer) = 0;
};

} // namespace stillgate
