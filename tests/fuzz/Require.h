#pragma once

#include <cstdio>
#include <cstdlib>

namespace stillgate
{

/// Ends the program where a property doesn't hold: that is how a fuzzer learns of it.
inline void require(bool holds, const char* property)
{
    if (holds)
        return;
    std::fprintf(stderr, "Property violated: %s\n", property);
    std::abort();
}

} // namespace stillgate
