#pragma once

#include "Platform/Host.h"

namespace stillgate
{

class MemoryHost final : public Host
{
public:
    [[nodiscard]] std::string name() const override { return "workbench"; }
};

} // namespace stillgate
