#pragma once

#include "Models/Record.h"

#include <string>
#include <vector>

namespace stillgate
{

/// `blocked-config.json` in the group container: what the DNS proxy blocks. It notices a new file by itself.
struct BlockedConfig
{
    std::vector<std::string> domains;
    std::vector<std::string> categories; ///< of the enabled rules, in their order, as often as they name them

    STILLGATE_RECORD(BlockedConfig, domains, categories);
};

} // namespace stillgate
