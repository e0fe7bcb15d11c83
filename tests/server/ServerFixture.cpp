#include "tests/server/ServerFixture.h"

#include "Accounts/Secrets.h"
#include "Accounts/SignIns.h"
#include "Accounts/Users.h"

#include <sodium.h>
#include <stdexcept>

namespace stillgate::test
{

namespace
{

constexpr server::PasswordCost cheapest{.operations = 1, .bytes = 8192};

/// The tests' own server, which ctest starts before them (scripts/private-postgresql).
std::string postgreSQLServer()
{
    const auto url = fileBytes(STILLGATE_POSTGRESQL_URL);
    if (url.empty())
        throw std::runtime_error{"No PostgreSQL server: run these tests by ctest, which starts one"};
    return url.substr(0, url.find('\n'));
}

server::Backend::Settings settings(const std::filesystem::path& folder)
{
    if (sodium_init() < 0)
        throw std::runtime_error{"libsodium can't be used"};
    return {
        .configurationFile = folder / "server.toml", .webSite = "https://stillgate.example", .passwordCost = cheapest};
}

} // namespace

TestDatabase::TestDatabase(Kind kind)
    : m_location((m_folder.path() / "test.db").string())
{
    if (kind == Kind::sqlite)
        return;
    m_name = "test_" + server::newId();
    std::ranges::replace(m_name, '-', '_');
    m_location = postgreSQLServer();
    server::Database{m_location}.command("CREATE DATABASE " + m_name);
    m_location.replace(m_location.find("/postgres?"), 9, '/' + m_name);
}

TestDatabase::~TestDatabase()
{
    if (!m_name.empty())
        server::Database{postgreSQLServer()}.command("DROP DATABASE " + m_name + " WITH (FORCE)");
}

ServerTest::ServerTest()
    : backend(settings(folder.path()), time, log)
{
    database.migrate();
}

Person ServerTest::signUp(const std::string& name, const std::string& timeZone)
{
    return database.inTransaction([&] {
        const server::SignUp form{.email = name + "@example.org",
            .displayName = name,
            .password = "not used here",
            .timeZone = timeZone,
            .language = "en"};
        const auto id = server::createUser(database, form, "no hash", time.now()).value();
        server::SignIns signIns{database};
        const auto pair = signIns.begin(id, time.now());
        return Person{.id = id,
            .token = pair.accessToken,
            .refreshToken = pair.refreshToken,
            .deviceId = signIns.accountOf(pair.accessToken, time.now())->deviceId};
    });
}

Reply ServerTest::call(
    const Person& person, const std::string& method, const std::string& path, const nlohmann::json& body)
{
    return call(person, method, path, body.is_null() ? std::string{} : body.dump());
}

Reply ServerTest::call(
    const Person& person, const std::string& method, const std::string& path, const std::string& body)
{
    const auto questionMark = std::min(path.find('?'), path.size());
    server::Request request{.method = method,
        .path = "/v1" + path.substr(0, questionMark),
        .query = path.substr(std::min(questionMark + 1, path.size())),
        .headers = {{"Content-Type", "application/json"}},
        .body = body,
        .address = person.address,
        .isEncrypted = true};
    if (!person.token.empty())
        request.headers.emplace("Authorization", "Bearer " + person.token);
    const auto response = backend.answer(request, database);
    EXPECT_EQ(response.contentType, "application/json") << path;
    return {.status = response.status, .body = nlohmann::json::parse(response.body)};
}

std::string ServerTest::link(const Person& guardian, const Person& controlled)
{
    const auto code = call(controlled, "POST", "/sharing/generate").body["code"];
    return call(guardian, "POST", "/sharing/link", {{"code", code}}).body["connection"]["id"];
}

std::string ServerTest::earn(const Person& giver, const std::string& connectionId, const Person& worker, int minutes)
{
    const nlohmann::json task{
        {"title", "Read"}, {"rewardMinutes", minutes}, {"repeatType", "once"}, {"requiresProof", false}};
    const std::string id = call(giver, "POST", "/guardian/connections/" + connectionId + "/tasks", task).body["id"];
    EXPECT_EQ(call(worker, "POST", "/tasks/" + id + "/complete", nlohmann::json::object()).status, 200);
    EXPECT_EQ(call(giver, "POST", "/tasks/" + id + "/approve").status, 200);
    return id;
}

} // namespace stillgate::test
