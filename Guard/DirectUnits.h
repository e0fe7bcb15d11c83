#pragma once

#include "Guard/SystemUnits.h"
#include "Platform/ChildProcess.h"

namespace stillgate::guard
{

/// systemd by its own program, for where there is no bus: in a chroot, in an installer, while the machine goes down.
class DirectUnits final : public SystemUnits
{
public:
    explicit DirectUnits(ChildProcess& children);

    [[nodiscard]] Task<Result<void>> enableAndStart(std::vector<std::string> units) override;
    [[nodiscard]] Task<Result<void>> stopAndDisable(std::vector<std::string> units) override;
    [[nodiscard]] Task<Result<void>> mask(std::vector<std::string> units) override;
    [[nodiscard]] Task<bool> isActive(std::string unit) override;

private:
    Task<Result<int>> systemctl(std::vector<std::string> arguments, std::vector<std::string> units = {});

    ChildProcess& m_children;
};

} // namespace stillgate::guard
