#pragma once

#include "Platform/ChildProcess.h"

#include <filesystem>

namespace stillgate::guard
{

/// Removes the folders of users that were put aside (GroupFolders.h), and the temporary files that killed writes have
/// left: those of the records, and of the hosts file. In a process of its own, which may take its time, and of which
/// what it doesn't come to is left to the next.
[[nodiscard]] Task<> removeLeftovers(ChildProcess* children, std::filesystem::path stateFolder);

} // namespace stillgate::guard
