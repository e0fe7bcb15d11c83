#pragma once

#include <string>

namespace stillgate
{

/// The clipboard of the desktop. Main thread only.
class Pasteboard
{
public:
    virtual ~Pasteboard() = default;

    /// Puts the text in the place of whatever was there.
    virtual void setString(const std::string& text) = 0;
};

} // namespace stillgate
