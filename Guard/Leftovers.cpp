#include "Guard/Leftovers.h"

namespace stillgate::guard
{

namespace
{

/// With the folder as its argument. A write that somebody else has begun isn't as old as ten minutes.
constexpr auto script = R"(
export PATH=/usr/bin:/bin
find "$1" -maxdepth 1 -name 'removed.??????' -exec rm -rf --one-file-system -- {} +
find "$1/guard" -type f -name '*.??????' -mmin +10 -delete
find /etc -maxdepth 1 -type f -name 'hosts.stillgate.??????' -mmin +10 -delete
)";

} // namespace

Task<> removeLeftovers(ChildProcess* children, std::filesystem::path stateFolder)
{
    (void)co_await children->run(
        {.program = "/bin/bash", .arguments = {"-c", script, "remove-leftovers", stateFolder.string()}});
}

} // namespace stillgate::guard
