#pragma once

#include "Models/Result.h"
#include "Platform/Task.h"

#include <string>
#include <vector>

namespace stillgate::guard
{

/// The units of the system's service manager. Errors: SystemFailure.
class SystemUnits
{
public:
    virtual ~SystemUnits() = default;

    /// Now and at every boot; ends when they run.
    [[nodiscard]] virtual Task<Result<void>> enableAndStart(std::vector<std::string> units) = 0;

    /// Now, and at no later boot; ends when they have ended. Units that don't exist are stopped already.
    [[nodiscard]] virtual Task<Result<void>> stopAndDisable(std::vector<std::string> units) = 0;

    /// Until the next boot nobody can start them. Those that run go on.
    [[nodiscard]] virtual Task<Result<void>> mask(std::vector<std::string> units) = 0;

    [[nodiscard]] virtual Task<bool> isActive(std::string unit) = 0;
};

} // namespace stillgate::guard
