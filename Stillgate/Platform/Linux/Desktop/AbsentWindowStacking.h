#pragma once

#include "Platform/WindowStacking.h"

namespace stillgate
{

/// A desktop on which a window can only ask to be in front, as every window does.
class AbsentWindowStacking final : public WindowStacking
{
public:
    [[nodiscard]] std::unique_ptr<Observation> keepInFront(std::uintptr_t, std::function<void()>) override
    {
        return std::make_unique<Observation>();
    }

    [[nodiscard]] bool isComposited() const override { return true; }
};

} // namespace stillgate
