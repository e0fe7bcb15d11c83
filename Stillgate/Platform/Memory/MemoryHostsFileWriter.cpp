#include "Platform/Memory/MemoryHostsFileWriter.h"

#include "Platform/HostsBlock.h"

#include <cerrno>

namespace stillgate
{

Task<Result<void>> MemoryHostsFileWriter::replaceBlock(
    std::string block, std::vector<std::string> newTemporaryNames, Permanence newPermanence)
{
    requests.push_back(block);
    if (const auto held = m_held)
        co_await *held;
    if (!isPermitted)
        co_return failure(SystemFailure{"write /etc/hosts", EACCES});
    const auto text = m_files.contains(hostsPath) ? m_files.at(hostsPath) : "";
    m_files.put(hostsPath, withoutHostsBlocks(text, "workbench") + block);
    temporaryNames = std::move(newTemporaryNames);
    permanence = newPermanence;
    co_return Result<void>{};
}

Task<Result<void>> MemoryHostsFileWriter::removeBlock()
{
    return replaceBlock({}, {}, Permanence::flexible);
}

void MemoryHostsFileWriter::finishHeld()
{
    const auto held = std::exchange(m_held, nullptr);
    held->happen();
}

} // namespace stillgate
