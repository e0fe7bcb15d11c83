#include "Platform/Linux/StandardErrorLog.h"

#include <algorithm>
#include <string>
#include <unistd.h>

namespace stillgate
{

void StandardErrorLog::write(std::string_view line)
{
    std::string text{line};
    // A server's or a file's text within the line must neither forge a second line nor steer a terminal.
    std::ranges::replace_if(text, [](unsigned char character) { return character < ' ' || character == 0x7f; }, ' ');
    text += '\n';
    // One call a line, so that lines of several processes don't mix. There is nowhere to report a failure to.
    [[maybe_unused]] const auto written = ::write(STDERR_FILENO, text.data(), text.size());
}

} // namespace stillgate
