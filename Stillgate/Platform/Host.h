#pragma once

#include <string>

namespace stillgate
{

/// The machine.
class Host
{
public:
    virtual ~Host() = default;

    /// Its name, as `hostname` gives it; empty if it has none.
    [[nodiscard]] virtual std::string name() const = 0;
};

} // namespace stillgate
