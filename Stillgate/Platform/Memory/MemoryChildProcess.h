#pragma once

#include "Platform/ChildProcess.h"

#include <deque>
#include <functional>

namespace stillgate
{

/// No program can be started, except that each of `answers` serves one call.
class MemoryChildProcess final : public ChildProcess
{
public:
    [[nodiscard]] Task<Result<int>> run(Command command) override
    {
        commands.push_back(command);
        if (answers.empty())
            co_return failure(SystemFailure{"start " + command.program});
        const auto answer = answers.front();
        answers.pop_front();
        co_return answer(command);
    }

    std::deque<std::function<int(const Command&)>> answers; ///< give the exit status
    std::vector<Command> commands;
};

} // namespace stillgate
