#pragma once

#include "Platform/HostsFileWriter.h"
#include "Platform/Memory/MemoryFileManager.h"
#include "Platform/OneShotEvent.h"

#include <memory>
#include <string>
#include <vector>

namespace stillgate
{

/// Changes the block of /etc/hosts on a disk in memory; refuses until `isPermitted`.
class MemoryHostsFileWriter final : public HostsFileWriter
{
public:
    explicit MemoryHostsFileWriter(MemoryFileManager& files)
        : m_files(files)
    {}

    [[nodiscard]] Task<Result<void>> replaceBlock(
        std::string block, std::vector<std::string> newTemporaryNames, Permanence newPermanence) override;
    [[nodiscard]] Task<Result<void>> removeBlock() override;

    /// Every request: the block, or "" for a removal.
    std::vector<std::string> requests;
    bool isPermitted = false;
    Permanence permanence = Permanence::flexible; ///< of the block in the file
    std::vector<std::string> temporaryNames;      ///< in it

    /// Later requests wait until `finishHeld`.
    void hold() { m_held = std::make_shared<OneShotEvent>(); }

    /// Lets those that wait come to their end; later ones don't wait.
    void finishHeld();

private:
    MemoryFileManager& m_files;
    std::shared_ptr<OneShotEvent> m_held;
};

} // namespace stillgate
