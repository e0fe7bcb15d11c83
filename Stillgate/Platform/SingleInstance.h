#pragma once

#include "Platform/Observers.h"

#include <functional>
#include <memory>

namespace stillgate
{

/// Sees to it that the application runs once for a user. Main thread only.
class SingleInstance
{
public:
    virtual ~SingleInstance() = default;

    /// Whether this process is the one that runs. If another one is, that one is told that the user has started the
    /// application again.
    [[nodiscard]] virtual bool claim() = 0;

    /// Called when the user has started the application again.
    [[nodiscard]] virtual std::unique_ptr<Observation> onReopen(std::function<void()> observer) = 0;
};

} // namespace stillgate
