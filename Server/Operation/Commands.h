#pragma once

#include "Platform/Clock.h"
#include "Platform/Log.h"

#include <string>
#include <vector>

namespace stillgate::server
{

/// Does what the command line asks for, without the program's own name, and gives the exit status (sysexits.h).
[[nodiscard]] int runCommand(
    const std::vector<std::string>& arguments, const std::string& version, const Clock& clock, Log& log);

} // namespace stillgate::server
