#include "App/StateCache.h"
#include "FuzzTarget.h"
#include "RoundTrip.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace stillgate;

    requireRoundTrip<CachedState>(textOf(data, size), DateForm::secondsSince2001);
    return 0;
}
