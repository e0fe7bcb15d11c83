#pragma once

#include "Platform/Log.h"

#include <string>
#include <vector>

namespace stillgate
{

class MemoryLog final : public Log
{
public:
    void write(std::string_view line) override { lines.emplace_back(line); }

    std::vector<std::string> lines;
};

} // namespace stillgate
