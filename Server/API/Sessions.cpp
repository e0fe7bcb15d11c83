#include "API/LiveAppConfig.h"
#include "API/Route.h"
#include "Accounts/Attempts.h"
#include "Accounts/DeviceCodes.h"

namespace stillgate::server
{

namespace
{

constexpr int codesPerAddress = 60; // in 15 minutes, from a whole school behind one address

Response requestDeviceCode(Call& call)
{
    if (!Attempts{call.database, "device-code", codesPerAddress}.take({networkOf(call.request.address)}, call.now))
        throw Refusal{429, "Too many sign-ins were started from this address. Wait a quarter of an hour"};
    return jsonAnswer(DeviceCodes{call.database}.request(call.request.address, call.service.approvalPage, call.now));
}

Response pollDeviceCode(Call& call)
{
    const auto answer = DeviceCodes{call.database}.poll(call.body<PollDeviceCodeBody>().device_code, call.now);
    if (!answer)
        throw Refusal{404, "This code has expired, or was used"};
    return jsonAnswer(*answer);
}

Response refresh(Call& call)
{
    const auto pair = SignIns{call.database}.refresh(call.body<RefreshTokenBody>().refreshToken, call.now);
    if (!pair) // answered, not thrown: that a sign-in has ended is to stay
        return errorAnswer(401, "The session has expired");
    return jsonAnswer(*pair);
}

Response appConfig(Call& call)
{
    return jsonAnswer(call.service.appConfig.current());
}

} // namespace

Routes sessionRoutes()
{
    return {
        {"POST", "/auth/device-code", requestDeviceCode, Access::everybody},
        {"POST", "/auth/device-code/poll", pollDeviceCode, Access::everybody},
        {"POST", "/auth/refresh", refresh, Access::everybody},
        {"GET", "/app-config", appConfig, Access::everybody},
    };
}

} // namespace stillgate::server
