#pragma once

#include <functional>
#include <string>

namespace stillgate::test
{

/// Runs the event loop until it is so, for twenty seconds at most. Whether it has come about.
[[nodiscard]] bool becomes(const std::function<bool()>& condition);

/// Runs a command of bash to its end, and the event loop meanwhile; its standard output.
std::string shell(const std::string& command);

} // namespace stillgate::test
