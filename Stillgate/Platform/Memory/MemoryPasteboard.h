#pragma once

#include "Platform/Pasteboard.h"

namespace stillgate
{

class MemoryPasteboard final : public Pasteboard
{
public:
    void setString(const std::string& newText) override { text = newText; }

    std::string text;
};

} // namespace stillgate
