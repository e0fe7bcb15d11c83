#include "Operation/Backend.h"

#include "Accounts/Attempts.h"

#include <QDateTime>
#include <QLocale>

#include <algorithm>

namespace stillgate::server
{

namespace
{

constexpr std::chrono::days longestFeed{90};  ///< as far back as can be asked for
constexpr std::chrono::days longestReuse{30}; ///< a used refresh token that comes later is merely unknown

/// "Sun, 06 Nov 1994 08:49:37 GMT" (RFC 9110, 5.6.7).
std::string httpDate(Date moment)
{
    const auto seconds = std::chrono::floor<std::chrono::seconds>(moment).time_since_epoch().count();
    return QLocale::c()
        .toString(QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC), QStringLiteral("ddd, dd MMM yyyy hh:mm:ss 'GMT'"))
        .toStdString();
}

} // namespace

Backend::Backend(const Settings& settings, const Clock& clock, Log& log)
    : m_clock(clock)
    , m_log(log)
    , m_appConfig(settings.configurationFile, log)
    , m_service{.appConfig = m_appConfig, .texts = m_texts, .approvalPage = settings.webSite + WebSite::devicePath}
    , m_api(m_service, clock, log)
    , m_site(m_texts, clock, log, settings.passwordCost)
{}

Response Backend::answer(const Request& request, Database& database)
{
    const std::string prefix{API::prefix};
    const bool isForAPI = request.path == prefix || request.path.starts_with(prefix + '/');
    auto response = isForAPI ? answerForAPI(request, database) : m_site.answer(request, database);
    if (std::ranges::find(response.headers, "Cache-Control", &std::pair<std::string, std::string>::first) ==
        response.headers.end())
        response.headers.emplace_back("Cache-Control", "no-store");
    if (response.status == 429)
        response.headers.emplace_back("Retry-After", std::to_string(std::chrono::seconds{Attempts::period}.count()));
    response.headers.emplace_back("Date", httpDate(m_clock.now()));
    response.headers.emplace_back("X-Content-Type-Options", "nosniff");
    if (request.isEncrypted)
        response.headers.emplace_back("Strict-Transport-Security", "max-age=31536000");
    return response;
}

Response Backend::answerForAPI(const Request& request, Database& database)
{
    // THREAT: tokens belong on no wire without TLS, not even on this machine's own.
    return request.isEncrypted ? m_api.answer(request, database) : errorAnswer(404, "The API is served over TLS alone");
}

void Backend::tidy(Database& database)
{
    const auto now = m_clock.now();
    try {
        database.inTransaction([&] {
            for (const auto* table :
                {"access_tokens", "refresh_tokens", "web_sessions", "device_codes", "sharing_codes"})
                database.execute(std::string{"DELETE FROM "} + table + " WHERE expires_at <= ?", now);
            database.execute("DELETE FROM attempts WHERE made_at <= ?", now - Attempts::period);
            database.execute("DELETE FROM activity_events WHERE created_at <= ?", now - longestFeed);
            database.execute("DELETE FROM refresh_tokens WHERE rotated_at <= ?", now - longestReuse);
            // Without a refresh token nobody can go on with it.
            database.execute("DELETE FROM sign_ins WHERE id NOT IN (SELECT sign_in_id FROM refresh_tokens)");
        });
        static_cast<void>(database.wipeDeleted()); // or in an hour
    } catch (const DatabaseError& error) {
        m_log.write(std::string{"[Server] Can't delete what has expired: "} + error.what());
    }
}

} // namespace stillgate::server
