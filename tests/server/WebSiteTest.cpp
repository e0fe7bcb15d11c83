#include "tests/server/ServerFixture.h"

#include <regex>

namespace stillgate::test
{

namespace
{

using testing::HasSubstr;
using testing::Not;

constexpr auto signInPath = "/src/pages/auth/login.html";
constexpr auto signUpPath = "/src/pages/auth/signup.html";

std::string encoded(const std::map<std::string, std::string>& values)
{
    std::string form;
    for (const auto& [name, value] : values)
        form += name + '=' + QByteArray::fromStdString(value).toPercentEncoding().toStdString() + '&';
    return form;
}

/// A browser, as far as the server can tell: it keeps cookies and sends a page's token with its forms.
class WebSiteTest : public ServerTest
{
protected:
    server::Response visit(const std::string& method, const std::string& address, const std::string& body = "")
    {
        const auto questionMark = std::min(address.find('?'), address.size());
        server::Request request{.method = method,
            .path = address.substr(0, questionMark),
            .query = address.substr(std::min(questionMark + 1, address.size())),
            .headers = headers,
            .body = body,
            .address = "192.0.2.1",
            .isEncrypted = true};
        std::string sent;
        for (const auto& [name, value] : cookies)
            sent += name + '=' + value + "; ";
        request.headers.emplace("Cookie", sent);
        auto response = backend.answer(request, database);
        for (const auto& [name, value] : response.headers) {
            if (name == "Set-Cookie") {
                lastCookie = value;
                cookies[value.substr(0, value.find('='))] =
                    value.substr(value.find('=') + 1, value.find(';') - value.find('=') - 1);
            }
        }
        return response;
    }

    server::Response send(const std::string& path, std::map<std::string, std::string> form)
    {
        std::smatch found;
        const auto page = visit("GET", signUpPath).body + visit("GET", "/").body;
        std::regex_search(page, found, std::regex{"name=\"csrf\" value=\"([^\"]+)\""});
        form.emplace("csrf", found[1]);
        return visit("POST", path, encoded(form));
    }

    server::Response signUpHere(const std::string& name)
    {
        return send(signUpPath, {{"displayName", name}, {"email", "Ada@Example.org"}, {"password", "ten letters"}});
    }

    server::Response signInHere(const std::string& password, const std::string& next = "")
    {
        return send(signInPath, {{"email", " ada@example.org"}, {"password", password}, {"next", next}});
    }

    static std::string location(const server::Response& response)
    {
        for (const auto& [name, value] : response.headers) {
            if (name == "Location")
                return value;
        }
        return {};
    }

    std::map<std::string, std::string, server::CaseInsensitiveLess> headers{{"Host", "stillgate.example"}};
    std::map<std::string, std::string> cookies;
    std::string lastCookie;
};

STILLGATE_ON_BOTH_DATABASES(WebSiteTest);

TEST_P(WebSiteTest, formsActOnlyForTheirOwnPage)
{
    EXPECT_EQ(visit("POST", signUpPath, encoded({{"displayName", "a"}, {"email", "a@b"}})).status, 403);
    EXPECT_EQ(signUpHere("Ada").status, 303);
    EXPECT_EQ(send("/sign-out", {{"csrf", "guess"}}).status, 403);
    for (const auto& [name, value] :
        {std::pair{"Origin", "https://evil.example"}, std::pair{"Sec-Fetch-Site", "cross-site"}}) {
        headers.emplace(name, value);
        EXPECT_EQ(send("/sign-out", {}).status, 403) << name;
        headers.erase(name);
    }
    EXPECT_THAT(visit("GET", "/").body, HasSubstr("Ada"));
    EXPECT_EQ(send("/sign-out", {}).status, 303);
    EXPECT_THAT(visit("GET", "/").body, Not(HasSubstr("sign-out")));
}

TEST_P(WebSiteTest, sessionCookieIsOutOfReachOfScriptsAndOtherSites)
{
    signUpHere("Ada");
    EXPECT_THAT(lastCookie, HasSubstr("sg_session="));
    EXPECT_THAT(lastCookie, HasSubstr("; HttpOnly; SameSite=Lax; Secure"));
    const auto session = cookies["sg_session"];
    EXPECT_EQ(database.number("SELECT COUNT(*) FROM web_sessions WHERE digest = ?", session), 0);
    send("/sign-out", {});
    cookies["sg_session"] = session;
    EXPECT_EQ(location(visit("GET", "/device")), std::string{signInPath} + "?next=%2Fdevice");
}

TEST_P(WebSiteTest, whatPeopleTypeIsShownAndNeverRun)
{
    signUpHere("<script>alert(1)</script>\"'");
    const auto page = visit("GET", "/");
    EXPECT_THAT(page.body, HasSubstr("&lt;script&gt;alert(1)"));
    EXPECT_THAT(page.body, Not(HasSubstr("<script>")));
    EXPECT_THAT(visit("GET", "/device?user_code=%22%3E%3Cb%3E").body, Not(HasSubstr("<b>")));
    EXPECT_EQ(visit("GET", "/device?user_code=%ff").status, 400);
    EXPECT_EQ(visit("GET", "/assets/../pages/home.html").status, 404);
    EXPECT_EQ(visit("GET", "/v2").status, 404);
    EXPECT_THAT(visit("GET", "//evil.example/").body, Not(HasSubstr("evil.example")));
    EXPECT_EQ(visit("POST", "/time-zone", std::string(20'000, 'a')).status, 413);
    EXPECT_EQ(visit("PUT", "/").status, 405);
    EXPECT_THAT(visit("PUT", "/device").headers, testing::Contains(testing::Pair("Allow", "GET, POST")));
}

TEST_P(WebSiteTest, signInGoesOnWithinTheSiteAlone)
{
    signUpHere("Ada");
    for (const auto& [next, goal] : {std::pair{"/device?user_code=A", "/device?user_code=A"},
             std::pair{"https://evil.example", "/"}, std::pair{"//evil.example", "/"},
             std::pair{"/\\evil.example", "/"}, std::pair{"/a\r\nSet-Cookie: b", "/"}}) {
        send("/sign-out", {});
        EXPECT_EQ(location(signInHere("ten letters", next)), goal);
    }
}

TEST_P(WebSiteTest, fiveWrongPasswordsAreEnoughForAWhile)
{
    signUpHere("Ada");
    send("/sign-out", {});
    for (int attempt = 0; attempt < 5; ++attempt)
        EXPECT_EQ(signInHere("ten wrong letters").status, 401);
    const auto locked = signInHere("ten letters");
    EXPECT_EQ(locked.status, 429);
    EXPECT_THAT(locked.body, HasSubstr("Too many tries"));
    time.advance(std::chrono::minutes{15});
    EXPECT_EQ(signInHere("ten letters").status, 303);
}

TEST_P(WebSiteTest, timeZoneStaysInAPermanentConnection)
{
    signUpHere("Ada");
    EXPECT_EQ(send("/time-zone", {{"timeZone", "Mars/Olympus"}}).status, 400);
    EXPECT_EQ(send("/time-zone", {{"timeZone", "Pacific/Auckland"}}).status, 303);
    const auto guardian = signUp("guardian");
    database.execute("INSERT INTO connections (id, controller_user_id, controlled_user_id, daily_limit_minutes, "
                     "flexibility_mode, created_at) SELECT 'a', ?, id, 0, 'permanent', 0 FROM users "
                     "WHERE email = 'ada@example.org'",
        guardian.id);
    EXPECT_EQ(send("/time-zone", {{"timeZone", "UTC"}}).status, 403);
}

TEST_P(WebSiteTest, accountsAreChecked)
{
    const auto status = [&](const char* name, const char* email, const char* password) {
        return send(signUpPath, {{"displayName", name}, {"email", email}, {"password", password}}).status;
    };
    EXPECT_EQ(status(" ", "a@b.example", "ten letters"), 400);
    EXPECT_EQ(status("A", "a b@c", "ten letters"), 400);
    EXPECT_EQ(status("A", "@c", "ten letters"), 400);
    EXPECT_EQ(status("A", "a@b.example", "too short"), 400);
    EXPECT_EQ(signUpHere("Ada").status, 303);
    EXPECT_EQ(signUpHere("Other").status, 409);
}

TEST_P(WebSiteTest, languageFollowsTheBrowserUntilItIsChosen)
{
    headers.emplace("Accept-Language", "fr;q=0.9, tr-TR;q=0.8, en;q=0.1");
    EXPECT_THAT(visit("GET", signInPath).body, HasSubstr("<html lang=\"tr\">"));
    signUpHere("Ada");
    EXPECT_THAT(visit("GET", "/?lang=en").body, HasSubstr("<html lang=\"en\">"));
    EXPECT_THAT(visit("GET", "/").body, HasSubstr("<html lang=\"en\">"));
    EXPECT_EQ(database.number("SELECT COUNT(*) FROM users WHERE language = 'en'"), 1);
}

} // namespace

} // namespace stillgate::test
