#pragma once

#include "Models/Date.h"

#include <cstdint>
#include <set>
#include <string>

namespace stillgate
{

/// Apps and sites that the user has blocked for a while.
struct QuickBlockSession
{
    std::set<std::string> bundleIds; ///< in lower case
    std::set<std::string> domains;
    Date expiresAt;
    std::int64_t durationMinutes = 0; ///< as asked for

    bool operator==(const QuickBlockSession&) const = default;
};

} // namespace stillgate
