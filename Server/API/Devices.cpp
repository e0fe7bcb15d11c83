#include "API/Route.h"
#include "API/Stored.h"
#include "Family/Days.h"
#include "Family/Streaks.h"
#include "Platform/Text.h"

namespace stillgate::server
{

namespace
{

/// A device beats every five minutes; a longer silence isn't time under protection.
constexpr std::chrono::minutes longestBeat{10};

constexpr auto selectDevices = "SELECT devices.*, CASE WHEN EXISTS (SELECT 1 FROM sign_ins "
                               "WHERE sign_ins.device_id = devices.id) THEN 1 ELSE 0 END AS is_active FROM devices ";

} // namespace

std::vector<SGDevice> devicesOf(Database& database, const Account& account)
{
    return database.all<SGDevice>(
        std::string{selectDevices} + "WHERE user_id = ? ORDER BY CASE WHEN id = ? THEN 0 ELSE 1 END, created_at, id",
        account.userId, account.deviceId);
}

namespace
{

Response list(Call& call)
{
    return jsonAnswer(devicesOf(call.database, call.account));
}

/// Names the device that the sign-in was made for.
Response registerDevice(Call& call)
{
    const auto device = call.body<RegisterDeviceBody>();
    require(!trimmed(device.deviceName).empty() && device.deviceName.size() <= 200, "deviceName: 1 to 200 bytes");
    require(!device.platform.empty() && device.platform.size() <= 50, "platform: 1 to 50 bytes");
    call.database.execute("UPDATE devices SET device_name = ?, platform = ?, updated_at = ? WHERE id = ?",
        std::string{trimmed(device.deviceName)}, device.platform, call.now, call.account.deviceId);
    return jsonAnswer(
        call.database.first<SGDevice>(std::string{selectDevices} + "WHERE id = ?", call.account.deviceId).value(), 201);
}

Response heartbeat(Call& call)
{
    const auto beat = call.body<HeartbeatBody>();
    const auto device = call.database.first<SGDevice>(
        std::string{selectDevices} + "WHERE id = ? AND user_id = ?", call.argument("id"), call.account.userId);
    if (!device)
        throw notFound();
    call.database.execute("UPDATE devices SET last_heartbeat_at = ? WHERE id = ?", call.now, device->id);
    const auto silence = call.now - device->lastHeartbeatAt.value_or(Date{});
    const bool isFocus = beat.blockingWasActive && silence >= Date::duration::zero() && silence <= longestBeat;
    recordHeartbeat(call.database, call.account.userId, dayOf(call.now, call.account.timeZone),
        isFocus ? std::chrono::duration_cast<std::chrono::seconds>(silence) : std::chrono::seconds{0});
    return acknowledgement();
}

Response streak(Call& call)
{
    return jsonAnswer(streakOf(call.database, call.account.userId, dayOf(call.now, call.account.timeZone)));
}

} // namespace

Routes deviceRoutes()
{
    return {
        {"GET", "/devices", list},
        {"POST", "/devices", registerDevice},
        {"POST", "/devices/{id}/heartbeat", heartbeat},
        {"GET", "/stats/streak", streak},
    };
}

} // namespace stillgate::server
