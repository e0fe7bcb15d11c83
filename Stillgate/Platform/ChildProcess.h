#pragma once

#include "Models/Result.h"
#include "Platform/Task.h"

#include <string>
#include <vector>

namespace stillgate
{

struct Command
{
    std::string program; ///< absolute path
    std::vector<std::string> arguments;
    std::string standardInput; ///< of any size
};

/// Runs other programs.
class ChildProcess
{
public:
    virtual ~ChildProcess() = default;

    /// The exit status, once the program has ended. What it prints is not read.
    ///
    /// The child is not in our session, so that an interrupt from the terminal ends us and not what it is doing.
    /// Errors: SystemFailure, if it can't be started or is ended by a signal.
    [[nodiscard]] virtual Task<Result<int>> run(Command command) = 0;
};

} // namespace stillgate
