#pragma once

#include "Platform/Host.h"

namespace stillgate
{

class LinuxHost final : public Host
{
public:
    [[nodiscard]] std::string name() const override;
};

} // namespace stillgate
