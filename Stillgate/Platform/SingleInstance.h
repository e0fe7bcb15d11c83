#pragma once

#include "Platform/Observers.h"

#include <functional>
#include <memory>

namespace stillgate
{

/// How a second start of the application reaches the one that runs. Main thread only.
class SingleInstance
{
public:
    virtual ~SingleInstance() = default;

    /// From now on, this process hears of later starts.
    virtual void listen() = 0;

    /// Tells the process that runs that the user has started the application again; whether it has heard.
    [[nodiscard]] virtual bool reopenOther() = 0;

    /// Called when the user has started the application again.
    [[nodiscard]] virtual std::unique_ptr<Observation> onReopen(std::function<void()> observer) = 0;
};

} // namespace stillgate
