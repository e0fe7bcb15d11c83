#include "Web/WebSite.h"

#include "Web/Visit.h"

#include <array>

namespace stillgate::server
{

struct WebSite::Path
{
    const char* method;
    const char* path;
    Response (WebSite::*handle)(Visit&);
};

namespace
{

constexpr std::size_t longestForm = 16 * 1024; ///< bytes

/// False if the browser says that the form is another site's (Fetch Metadata, and the Origin of RFC 6454).
bool isFromHere(const Request& request)
{
    const auto& site = request.header("Sec-Fetch-Site");
    if (!site.empty() && site != "same-origin" && site != "none")
        return false;
    const auto& origin = request.header("Origin");
    return origin.empty() || origin == (request.isEncrypted ? "https://" : "http://") + request.header("Host");
}

std::string withQuery(const std::string& path, const std::map<std::string, std::string>& query)
{
    std::string address = path;
    char separator = '?';
    for (const auto& [name, value] : query) {
        if (value.empty())
            continue;
        address += separator;
        address += name;
        address += '=';
        address += QByteArray::fromStdString(value).toPercentEncoding().toStdString();
        separator = '&';
    }
    return address;
}

} // namespace

WebSite::WebSite(const Texts& texts, const Clock& clock, Log& log, PasswordCost passwordCost)
    : m_texts(texts)
    , m_clock(clock)
    , m_log(log)
    , m_passwordCost(passwordCost)
    , m_unknownUserHash(passwordHash(randomToken(), passwordCost))
{}

Response WebSite::answer(const Request& request, Database& database)
{
    Visit visit{.request = request, .database = database, .now = m_clock.now()};
    visit.language = m_texts.languageFor(request.header("Accept-Language"));
    Response response;
    try {
        response = run(visit);
    } catch (const Refusal& refusal) {
        response = failure(visit, refusal.status());
    } catch (const std::exception& error) {
        m_log.write(std::string{"[Server] A page failed: "} + error.what());
        response = failure(visit, 500);
    }
    for (const auto& cookie : visit.cookies)
        response.headers.emplace_back("Set-Cookie", cookie);
    return response;
}

Response WebSite::run(Visit& visit)
{
    static constexpr std::array<Path, 10> paths{{
        {"GET", "/", &WebSite::home},
        {"GET", signInPath, &WebSite::signInPage},
        {"POST", signInPath, &WebSite::signIn},
        {"GET", signUpPath, &WebSite::signUpPage},
        {"POST", signUpPath, &WebSite::signUp},
        {"POST", "/sign-out", &WebSite::signOut},
        {"POST", "/invite", &WebSite::invite},
        {"GET", devicePath, &WebSite::devicePage},
        {"POST", devicePath, &WebSite::decideDevice},
        {"POST", "/time-zone", &WebSite::setTimeZone},
    }};
    const auto& path = visit.request.path;
    const auto method = visit.request.method == "HEAD" ? "GET" : visit.request.method;
    if (path.starts_with("/assets/") && method == "GET")
        return assetAnswer(path.substr(1));
    identify(visit);
    std::string allowedMethods;
    for (const auto& known : paths) {
        if (path != known.path)
            continue;
        allowedMethods += (allowedMethods.empty() ? "" : ", ") + std::string{known.method};
        if (method != known.method)
            continue;
        if (visit.isPost() && (!isFromHere(visit.request) || !isSameSecret(visit.value("csrf"), visit.csrfToken())))
            return message(visit, "isError", "errorHeading", "errorFormExpired", 403);
        return (this->*known.handle)(visit);
    }
    auto answer = failure(visit, allowedMethods.empty() ? 404 : 405);
    if (!allowedMethods.empty())
        answer.headers.emplace_back("Allow", allowedMethods);
    return answer;
}

/// Who it is, in which language, and with which cookies.
void WebSite::identify(Visit& visit)
{
    const auto& request = visit.request;
    visit.query = formValues(request.query);
    if (visit.isPost()) {
        if (request.body.size() > longestForm)
            throw Refusal{413, "A form is short"};
        visit.form = formValues(request.body);
    }
    visit.visitToken = cookie(request, visitCookie);
    if (visit.visitToken.empty()) {
        visit.visitToken = randomToken();
        visit.setCookie(visitCookie, visit.visitToken, sessionLifetime);
    }
    visit.sessionToken = cookie(request, sessionCookie);
    if (!visit.sessionToken.empty())
        visit.visitor = visit.database.inSnapshot([&] {
            return visit.database.first<Visitor>(
                "SELECT users.id, email, display_name, time_zone, language FROM web_sessions "
                "JOIN users ON users.id = web_sessions.user_id WHERE digest = ? AND expires_at > ?",
                digestOf(visit.sessionToken), visit.now);
        });
    if (!visit.visitor)
        visit.sessionToken.clear();

    const auto remembered = visit.visitor ? visit.visitor->language : cookie(request, languageCookie);
    if (m_texts.has(remembered))
        visit.language = remembered;
    const auto wanted = visit.query.find("lang");
    if (wanted == visit.query.end() || !m_texts.has(wanted->second))
        return;
    visit.language = wanted->second;
    visit.setCookie(languageCookie, visit.language, languageLifetime);
    if (visit.visitor)
        visit.database.inTransaction([&] {
            visit.database.execute("UPDATE users SET language = ? WHERE id = ?", visit.language, visit.visitor->id);
        });
}

Response WebSite::page(
    Visit& visit, const std::string& name, const std::string& titleKey, PageData data, int status) const
{
    PageData texts{PageData::type::object};
    for (const auto& [key, text] : m_texts.all(visit.language))
        texts.set(key, text);
    data.set("t", texts);
    data.set("title", m_texts.text(visit.language, titleKey));
    data.set("language", visit.language);
    data.set("csrf", visit.csrfToken());
    data.set("isSignedIn", visit.visitor.has_value());
    if (visit.visitor) {
        data.set("displayName", visit.visitor->displayName);
        data.set("email", visit.visitor->email);
    }
    PageData languages{PageData::type::list};
    // A page that answers a form has no address of its own to come back to, and one that isn't there could be made to
    // look like another site's.
    const bool hasAddress = status != 404 && !(visit.isPost() && visit.visitor);
    const auto path = hasAddress ? visit.request.path : "/";
    for (const auto& [code, label] : {std::pair{"en", "English"}, std::pair{"tr", "Türkçe"}}) {
        auto query = visit.isPost() ? std::map<std::string, std::string>{} : visit.query;
        query["lang"] = code;
        PageData language{PageData::type::object};
        language.set("code", code);
        language.set("label", label);
        language.set("href", withQuery(path, query));
        language.set("isCurrent", visit.language == code);
        languages.push_back(language);
    }
    data.set("languages", languages);
    return htmlAnswer(renderedPage(name, data), status);
}

/// The same form with what was typed, but for the password, and what was wrong with it.
Response WebSite::formAgain(
    Visit& visit, const std::string& name, const std::string& titleKey, const std::string& errorKey, int status) const
{
    PageData data{PageData::type::object};
    for (const auto* field : {"email", "displayName", "timeZone", "next", "invite"})
        data.set(field, visit.value(field));
    const std::map<std::string, std::string> handedOn{{"next", visit.value("next")}, {"invite", visit.value("invite")}};
    data.set("isInvited", !visit.value("invite").empty());
    data.set("signUpHref", withQuery(signUpPath, handedOn));
    data.set("signInHref", withQuery(signInPath, handedOn));
    if (!errorKey.empty())
        data.set("error", m_texts.text(visit.language, errorKey));
    return page(visit, name, titleKey, std::move(data), status);
}

Response WebSite::message(Visit& visit, const char* kind, const std::string& heading, const std::string& text,
    int status, const Texts::Values& values) const
{
    PageData action{PageData::type::object};
    action.set("label", m_texts.text(visit.language, "actionHome"));
    action.set("href", "/");
    PageData data{PageData::type::object};
    data.set(kind, true);
    data.set("heading", m_texts.text(visit.language, heading));
    data.set("text", m_texts.text(visit.language, text, values));
    data.set("action", action);
    return page(visit, "message", heading, std::move(data), status);
}

Response WebSite::failure(Visit& visit, int status) const
{
    switch (status) {
    case 404:
        return message(visit, "isError", "errorNotFoundHeading", "errorNotFound", status);
    case 405:
        return message(visit, "isError", "errorHeading", "errorMethod", status);
    case 429:
        return message(visit, "isError", "errorHeading", "errorTooManyTries", status);
    case 400:
    case 413:
        return message(visit, "isError", "errorHeading", "errorRequest", status);
    default:
        return message(visit, "isError", "errorServerHeading", "errorServer", status);
    }
}

} // namespace stillgate::server
