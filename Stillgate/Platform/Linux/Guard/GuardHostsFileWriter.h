#pragma once

#include "Platform/HostsFileWriter.h"
#include "Platform/Linux/Guard/GuardClient.h"

namespace stillgate
{

/// Has the guard change the hosts file, which only root may.
class GuardHostsFileWriter final : public HostsFileWriter
{
public:
    explicit GuardHostsFileWriter(GuardClient& guard)
        : m_guard(guard)
    {}

    [[nodiscard]] Task<Result<void>> replaceBlock(
        std::string block, std::vector<std::string> temporaryNames, Permanence permanence) override
    {
        return m_guard.replaceHostsBlock(std::move(block), std::move(temporaryNames), permanence);
    }

    [[nodiscard]] Task<Result<void>> removeBlock() override { return m_guard.removeHostsBlock(); }

private:
    GuardClient& m_guard;
};

} // namespace stillgate
