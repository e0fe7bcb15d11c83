#pragma once

#include "Platform/Log.h"

namespace stillgate
{

/// Lines on standard error, where a service manager's journal takes them.
class StandardErrorLog final : public Log
{
public:
    void write(std::string_view line) override;
};

} // namespace stillgate
