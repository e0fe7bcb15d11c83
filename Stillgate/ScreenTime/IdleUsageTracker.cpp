#include "ScreenTime/IdleUsageTracker.h"

namespace stillgate
{

Task<> IdleUsageTracker::reportToBackend()
{
    co_return;
}

} // namespace stillgate
