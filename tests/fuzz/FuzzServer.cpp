#include "Accounts/Secrets.h"
#include "Accounts/SignIns.h"
#include "Accounts/Users.h"
#include "Family/Connections.h"
#include "FuzzTarget.h"
#include "Operation/Backend.h"
#include "Platform/Memory/ManualTime.h"
#include "Platform/Memory/MemoryLog.h"
#include "Require.h"

#include <QCoreApplication>

#include <memory>
#include <sodium.h>

namespace stillgate
{

namespace
{

// Fixed, so that an input does the same whenever it is run.
constexpr auto visitToken = "visit";
constexpr auto sessionToken = "session";

void replaceAll(std::string& text, std::string_view name, const std::string& value)
{
    for (auto at = text.find(name); at != std::string::npos; at = text.find(name, at + value.size()))
        text.replace(at, name.size(), value);
}

/// A server with a guardian, who makes the requests, and somebody to guard.
class Family
{
public:
    Family()
        : m_backend({.configurationFile = "/nonexistent",
                        .webSite = "https://stillgate.example",
                        .passwordCost = {.operations = 1, .bytes = 8192}},
              m_time, m_log)
    {
        m_database.migrate();
        m_guardian = signUp("guardian");
        const auto controlled = signUp("controlled");
        const auto now = m_time.now();
        m_database.execute("INSERT INTO sharing_codes (code, user_id, created_at, expires_at) VALUES ('CODE', ?, ?, ?)",
            controlled, now, now + std::chrono::hours{1});
        m_connection = server::linkWithCode(m_database, m_guardian, "CODE", now)->id;
        const auto pair = server::SignIns{m_database}.begin(m_guardian, now);
        m_token = pair.accessToken;
        m_device = server::SignIns{m_database}.accountOf(m_token, now)->deviceId;
        m_database.execute("INSERT INTO web_sessions (digest, user_id, expires_at) VALUES (?, ?, ?)",
            server::digestOf(sessionToken), m_guardian, now + std::chrono::hours{1});
    }

    /// The input is a request line without a version, and behind it the body. "$connection", "$device" and "$user" in
    /// it are ids that exist.
    void run(std::string input)
    {
        replaceAll(input, "$connection", m_connection);
        replaceAll(input, "$device", m_device);
        replaceAll(input, "$user", m_guardian);
        const auto request = requestFrom(input);
        const auto response = m_backend.answer(request, m_database);
        for (const auto& line : m_log.lines)
            require(false, line.c_str());
        require(response.status >= 200 && response.status < 500, "no request makes the server fail");
        if (request.path.starts_with("/v1/"))
            requireJSON(response);
    }

private:
    std::string signUp(const std::string& name)
    {
        return server::createUser(m_database,
            {.email = name + "@example.org", .displayName = name, .password = {}, .timeZone = "UTC", .language = "en"},
            "no hash", m_time.now())
            .value();
    }

    [[nodiscard]] server::Request requestFrom(const std::string& input) const
    {
        const auto blank = std::min(input.find(' '), input.size());
        const auto lineEnd = std::max(std::min(input.find('\n'), input.size()), blank);
        const auto target = input.substr(std::min(blank + 1, lineEnd), lineEnd - std::min(blank + 1, lineEnd));
        const auto questionMark = std::min(target.find('?'), target.size());
        server::Request request{.method = input.substr(0, blank),
            .path = target.substr(0, questionMark),
            .query = target.substr(std::min(questionMark + 1, target.size())),
            .headers = {},
            .body = input.substr(std::min(lineEnd + 1, input.size())),
            .address = "192.0.2.1",
            .isEncrypted = true};
        if (request.path.starts_with("/v1/")) {
            request.headers.emplace("Authorization", "Bearer " + m_token);
            request.headers.emplace("Content-Type", "application/json");
        } else {
            request.headers.emplace("Cookie", std::string{"sg_visit="} + visitToken + "; sg_session=" + sessionToken);
            request.body += "&csrf=" + server::derivedToken(visitToken, sessionToken, "csrf");
        }
        return request;
    }

    static void requireJSON(const server::Response& response)
    {
        const JSONDecoder decoder{DateForm::iso8601};
        require(response.contentType == "application/json", "the API answers in JSON");
        require(nlohmann::json::accept(response.body), "an answer is well-formed");
        if (response.status >= 400)
            require(decoder.decode<ErrorResponse>(response.body).has_value(), "a failure says why");
    }

    ManualTime m_time;
    MemoryLog m_log;
    server::Database m_database{":memory:"};
    server::Backend m_backend;
    std::string m_guardian;
    std::string m_connection;
    std::string m_device;
    std::string m_token;
};

} // namespace

} // namespace stillgate

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace stillgate;

    static int argumentCount = 0;
    static const QCoreApplication application{argumentCount, nullptr};
    [[maybe_unused]] static const int isReady = sodium_init();

    // Anew now and then: often enough for an input that fails to fail by itself as well, seldom enough to be fast.
    constexpr int inputsPerFamily = 200;
    static auto& family = *new std::unique_ptr<Family>; // outlives the database drivers' own statics
    static int inputs = 0;
    if (inputs++ % inputsPerFamily == 0)
        family = std::make_unique<Family>();
    family->run(std::string{textOf(data, size)});
    return 0;
}
