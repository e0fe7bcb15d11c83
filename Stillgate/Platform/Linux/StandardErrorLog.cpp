#include "Platform/Linux/StandardErrorLog.h"

#include "Platform/Text.h"

#include <unistd.h>

namespace stillgate
{

void StandardErrorLog::write(std::string_view line)
{
    const auto text = onOneLine(line) + '\n';
    // One call a line, so that lines of several processes don't mix. There is nowhere to report a failure to.
    [[maybe_unused]] const auto written = ::write(STDERR_FILENO, text.data(), text.size());
}

} // namespace stillgate
