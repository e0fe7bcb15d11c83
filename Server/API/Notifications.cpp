#include "API/Route.h"

namespace stillgate::server
{

namespace
{

/// A token belongs to one installation: whoever registers it last has it.
Response registerToken(Call& call)
{
    const auto body = call.body<PushTokenBody>();
    require(!body.token.empty() && body.token.size() <= 4096, "token: 1 to 4096 bytes");
    require(!body.platform.empty() && body.platform.size() <= 50, "platform: 1 to 50 bytes");
    const auto deviceId = body.deviceId.value_or(call.account.deviceId);
    const bool isOwn = call.database.number("SELECT COUNT(*) FROM devices WHERE id = ? AND user_id = ?", deviceId,
                           call.account.userId) > 0;
    if (!isOwn)
        throw notFound();
    call.database.execute(
        "INSERT INTO push_tokens (token, user_id, device_id, platform, updated_at) VALUES (?, ?, ?, ?, ?) "
        "ON CONFLICT (token) DO UPDATE SET user_id = excluded.user_id, device_id = excluded.device_id, "
        "platform = excluded.platform, updated_at = excluded.updated_at",
        body.token, call.account.userId, deviceId, body.platform, call.now);
    return jsonAnswer(std::map<std::string, std::string>{{"status", "registered"}});
}

/// Everything is on until somebody turns it off.
constexpr NotificationPreferences allOn{.blockAlerts = true,
    .streakReminders = true,
    .taskNotifications = true,
    .dailySummary = true,
    .authorityRequests = true,
    .limitWarnings = true};

Response preferences(Call& call)
{
    return jsonAnswer(call.database
            .first<NotificationPreferences>(
                "SELECT * FROM notification_preferences WHERE user_id = ?", call.account.userId)
            .value_or(allOn));
}

Response updatePreferences(Call& call)
{
    const auto wanted = call.body<NotificationPreferences>();
    call.database.execute("DELETE FROM notification_preferences WHERE user_id = ?", call.account.userId);
    call.database.execute("INSERT INTO notification_preferences (user_id, block_alerts, streak_reminders, "
                          "task_notifications, daily_summary, authority_requests, limit_warnings) "
                          "VALUES (?, ?, ?, ?, ?, ?, ?)",
        call.account.userId, wanted.blockAlerts, wanted.streakReminders, wanted.taskNotifications, wanted.dailySummary,
        wanted.authorityRequests, wanted.limitWarnings);
    return jsonAnswer(wanted);
}

} // namespace

Routes notificationRoutes()
{
    return {
        {"POST", "/notifications/register", registerToken},
        {"GET", "/notifications/preferences", preferences},
        {"PUT", "/notifications/preferences", updatePreferences},
    };
}

} // namespace stillgate::server
