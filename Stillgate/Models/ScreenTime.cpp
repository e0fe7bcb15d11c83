#include "Models/ScreenTime.h"

namespace stillgate
{

std::string DailyScreenTime::id() const
{
    return deviceId.value_or("unknown") + "-" + date;
}

} // namespace stillgate
