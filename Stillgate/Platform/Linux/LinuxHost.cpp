#include "Platform/Linux/LinuxHost.h"

#include <climits>
#include <unistd.h>

namespace stillgate
{

std::string LinuxHost::name() const
{
    char name[HOST_NAME_MAX + 1] = {};
    return ::gethostname(name, sizeof name - 1) == 0 ? name : "";
}

} // namespace stillgate
