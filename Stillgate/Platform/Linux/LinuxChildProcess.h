#pragma once

#include "Platform/ChildProcess.h"

namespace stillgate
{

class LinuxChildProcess final : public ChildProcess
{
public:
    [[nodiscard]] Task<Result<int>> run(Command command) override;
};

} // namespace stillgate
