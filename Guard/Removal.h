#pragma once

#include "Guard/SystemUnits.h"
#include "Platform/ChildProcess.h"
#include "Platform/HostsFileWriter.h"
#include "Platform/Log.h"

#include <filesystem>

namespace stillgate::guard
{

/// What the removal of the installation undoes.
struct Removal
{
    SystemUnits& units;
    HostsFileWriter& hostsFile;
    ChildProcess& children;
    Log& log;
    std::vector<std::filesystem::path> folders; ///< of ours, with everything in them

    /// Ends every user's protection and leaves no trace of it. Goes on after a failure and says in the log what failed;
    /// whether nothing did. A second time there is nothing to do.
    [[nodiscard]] Task<bool> run();

private:
    [[nodiscard]] Task<Result<void>> deleteTable();
    [[nodiscard]] Task<Result<void>> removeFolder(std::filesystem::path folder);
};

} // namespace stillgate::guard
