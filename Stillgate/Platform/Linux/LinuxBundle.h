#pragma once

#include "Platform/Bundle.h"
#include "Platform/Linux/Deployment.h"

namespace stillgate
{

/// The folder `lib/stillgate` beside the `bin` of the running program, installed or built.
class LinuxBundle final : public Bundle
{
public:
    explicit LinuxBundle(Deployment deployment);

    [[nodiscard]] std::filesystem::path path() const override;
    [[nodiscard]] std::optional<std::string> infoValue(std::string_view key) const override;

private:
    Deployment m_deployment;
};

} // namespace stillgate
