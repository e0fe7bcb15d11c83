#pragma once

#include "Models/Result.h"
#include "Platform/Permanence.h"
#include "Platform/Task.h"

#include <string>
#include <vector>

namespace stillgate
{

/// Changes our marked block in the system's hosts file (hosts(5)); HostsBlock.h tells what the block is.
///
/// Every byte outside the block stays as it is, and at any moment the file is the old one or the new one, never a
/// part; only a file that is a mount point is written in place. Afterwards the system's cache of names is flushed.
/// Errors: SystemFailure; the file is then the old one.
class HostsFileWriter
{
public:
    virtual ~HostsFileWriter() = default;

    /// The block, a text from its first to its last byte, takes the place of whatever blocks the file holds, at its
    /// end. Where several accounts of the machine have one, it takes the place of this user's, and the file holds the
    /// names of all. `temporaryNames`, lower case, are those in it that are going to leave it again: they do so freely,
    /// whatever the permanence of the others is.
    [[nodiscard]] virtual Task<Result<void>> replaceBlock(
        std::string block, std::vector<std::string> temporaryNames, Permanence permanence) = 0;

    [[nodiscard]] virtual Task<Result<void>> removeBlock() = 0;
};

} // namespace stillgate
