#include "Platform/Memory/MemoryHostsFileWriter.h"

#include "Platform/HostsBlock.h"

#include <cerrno>

namespace stillgate
{

Task<Result<void>> MemoryHostsFileWriter::replaceBlock(std::string block)
{
    requests.push_back(block);
    if (const auto held = m_held)
        co_await *held;
    if (!isPermitted)
        co_return failure(SystemFailure{"write /etc/hosts", EACCES});
    auto& text = m_files.files[hostsPath];
    text = withoutHostsBlocks(text, "workbench") + block;
    co_return Result<void>{};
}

Task<Result<void>> MemoryHostsFileWriter::removeBlock()
{
    return replaceBlock({});
}

void MemoryHostsFileWriter::finishHeld()
{
    const auto held = std::exchange(m_held, nullptr);
    held->happen();
}

} // namespace stillgate
