#pragma once

#include <string_view>

namespace stillgate
{

/// The program's log: lines of plain text, each with a bracketed tag ("[AppState]") and no level.
///
/// No token, address of a visited page or window title ever goes in.
class Log
{
public:
    virtual ~Log() = default;

    virtual void write(std::string_view line) = 0;
};

} // namespace stillgate
