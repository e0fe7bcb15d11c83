#pragma once

#include "Database/Database.h"
#include "HTTP/Message.h"
#include "Models/Account.h"
#include "Web/WebSite.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace stillgate::server
{

/// Who is signed in on the web site.
struct Visitor
{
    std::string id;
    std::string email;
    std::string displayName;
    std::string timeZone;
    std::string language;

    STILLGATE_RECORD(Visitor, id, email, displayName, timeZone, language);
};

/// One request for a page, and what is known of who makes it.
struct WebSite::Visit
{
    const Request& request;
    Database& database;
    Date now;
    std::map<std::string, std::string> query = {};
    std::map<std::string, std::string> form = {}; ///< empty unless it is a POST
    std::string language = {};
    std::string visitToken = {};   ///< of a cookie, also for those who aren't signed in
    std::string sessionToken = {}; ///< of a cookie; empty if nobody is signed in
    std::optional<Visitor> visitor = {};
    std::vector<std::string> cookies = {}; ///< to set

    [[nodiscard]] bool isPost() const { return request.method == "POST"; }

    /// What every form carries.
    [[nodiscard]] std::string csrfToken() const { return derivedToken(visitToken, sessionToken, "csrf"); }

    /// The invitation or the address to go on to, which sign-in and sign-up hand on.
    [[nodiscard]] std::string value(const std::string& name) const
    {
        const auto& values = isPost() ? form : query;
        const auto found = values.find(name);
        return found == values.end() ? std::string{} : found->second;
    }

    void setCookie(const std::string& name, const std::string& value, std::chrono::seconds lifetime)
    {
        cookies.push_back(name + '=' + value + "; Path=/; Max-Age=" + std::to_string(lifetime.count()) +
            "; HttpOnly; SameSite=Lax" + (request.isEncrypted ? "; Secure" : ""));
    }
};

inline constexpr auto visitCookie = "sg_visit";
inline constexpr auto sessionCookie = "sg_session";
inline constexpr auto languageCookie = "sg_language";
inline constexpr std::chrono::days sessionLifetime{14};
inline constexpr std::chrono::days languageLifetime{365};

} // namespace stillgate::server
