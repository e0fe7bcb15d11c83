#include "Accounts/Attempts.h"
#include "Accounts/DeviceCodes.h"
#include "Family/Connections.h"
#include "Web/Visit.h"
#include "Web/WebSite.h"

#include <QTimeZone>

namespace stillgate::server
{

namespace
{

constexpr int signUpsPerAddress = 30; // in 15 minutes

/// A path of this site to go on to: never another site's address.
std::string ownPath(const std::string& next)
{
    constexpr std::size_t longest = 2000; // bytes, in a header
    const bool isOwn = next.size() <= longest && next.starts_with('/') && !next.starts_with("//") &&
        next.find('\\') == std::string::npos &&
        std::ranges::none_of(next, [](unsigned char letter) { return letter < ' '; });
    return isOwn ? next : "/";
}

std::string encoded(const std::string& value)
{
    return QByteArray::fromStdString(value).toPercentEncoding().toStdString();
}

int statusOf(const std::string& errorKey)
{
    if (errorKey.empty())
        return 200;
    return errorKey == "errorTooManyTries" ? 429 : 404;
}

const char* textKeyOf(SignUpFault fault)
{
    switch (fault) {
    case SignUpFault::emailInvalid:
        return "errorEmailInvalid";
    case SignUpFault::emailTaken:
        return "errorEmailTaken";
    case SignUpFault::nameMissing:
        return "errorNameMissing";
    case SignUpFault::nameTooLong:
        return "errorNameTooLong";
    case SignUpFault::passwordTooShort:
        return "errorPasswordTooShort";
    case SignUpFault::passwordTooLong:
        break;
    }
    return "errorPasswordTooLong";
}

} // namespace

Response WebSite::home(Visit& visit)
{
    PageData data{PageData::type::object};
    if (visit.value("notice") == "signed-out")
        data.set("notice", m_texts.text(visit.language, "signedOutNotice"));
    if (!visit.visitor)
        return page(visit, "home", "titleHome", std::move(data));
    if (visit.value("notice") == "time-zone")
        data.set("notice", m_texts.text(visit.language, "timeZoneSavedNotice"));
    PageData zones{PageData::type::list};
    for (const auto& id : QTimeZone::availableTimeZoneIds()) {
        const auto identifier = id.toStdString();
        const bool isCurrent = identifier == visit.visitor->timeZone;
        if (identifier.find('/') == std::string::npos && identifier != "UTC" && !isCurrent)
            continue; // "EST" and the like, kept for old systems
        PageData zone{PageData::type::object};
        zone.set("id", identifier);
        zone.set("isCurrent", isCurrent);
        zones.push_back(zone);
    }
    data.set("timeZones", zones);
    return page(visit, "home", "titleHomeSignedIn", std::move(data));
}

Response WebSite::signInPage(Visit& visit)
{
    const auto invitation = visit.value("invite");
    if (!visit.visitor)
        return formAgain(visit, "login", "titleSignIn", "", 200);
    if (invitation.empty())
        return redirection(ownPath(visit.value("next")));
    PageData data{PageData::type::object};
    data.set("code", invitation);
    return page(visit, "invite", "titleInvite", std::move(data));
}

Response WebSite::signUpPage(Visit& visit)
{
    return visit.visitor ? signInPage(visit) : formAgain(visit, "signup", "titleSignUp", "", 200);
}

/// The account with this address and password. The hash is worked out between two transactions: it takes long.
std::optional<std::string> WebSite::userWithPassword(Visit& visit)
{
    auto& database = visit.database;
    const auto email = normalizedEmail(visit.value("email"));
    Attempts attempts{database, "password"};
    const auto attempt =
        database.inTransaction([&] { return attempts.take({email, networkOf(visit.request.address)}, visit.now); });
    if (!attempt)
        throw Refusal{429, "Too many tries"};
    const auto known = database.inSnapshot([&] { return credentialsOf(database, email); });
    const bool isRight = isPassword(visit.value("password"), known ? known->passwordHash : m_unknownUserHash);
    if (!known || !isRight)
        return std::nullopt;
    database.inTransaction([&] { attempts.giveBack(*attempt); });
    return known->id;
}

Response WebSite::signIn(Visit& visit)
{
    std::optional<std::string> userId;
    try {
        userId = userWithPassword(visit);
    } catch (const Refusal& refusal) {
        return formAgain(visit, "login", "titleSignIn", "errorTooManyTries", refusal.status());
    }
    if (!userId)
        return formAgain(visit, "login", "titleSignIn", "errorWrongSignIn", 401);
    return enter(visit, *userId);
}

Response WebSite::signUp(Visit& visit)
{
    auto& database = visit.database;
    const SignUp form{.email = visit.value("email"),
        .displayName = visit.value("displayName"),
        .password = visit.value("password"),
        .timeZone = visit.value("timeZone"),
        .language = visit.language};
    if (const auto fault = faultOf(form))
        return formAgain(visit, "signup", "titleSignUp", textKeyOf(*fault), 400);
    const bool isAllowed = database.inTransaction([&] {
        return Attempts{database, "sign-up", signUpsPerAddress}
            .take({networkOf(visit.request.address)}, visit.now)
            .has_value();
    });
    if (!isAllowed)
        return formAgain(visit, "signup", "titleSignUp", "errorTooManyTries", 429);
    const auto hash = passwordHash(form.password, m_passwordCost);
    const auto userId = database.inTransaction([&] { return createUser(database, form, hash, visit.now); });
    if (!userId)
        return formAgain(visit, "signup", "titleSignUp", textKeyOf(userId.error()), 409);
    return enter(visit, *userId);
}

/// Begins a session, and goes on to where the visitor was heading.
Response WebSite::enter(Visit& visit, const std::string& userId)
{
    const auto token = randomToken();
    visit.database.inTransaction([&] {
        visit.database.execute("DELETE FROM web_sessions WHERE digest = ?", digestOf(visit.sessionToken));
        visit.database.execute("INSERT INTO web_sessions (digest, user_id, expires_at) VALUES (?, ?, ?)",
            digestOf(token), userId, visit.now + sessionLifetime);
    });
    visit.setCookie(sessionCookie, token, sessionLifetime);
    const auto invitation = visit.value("invite");
    if (!invitation.empty())
        return redirection(std::string{signInPath} + "?invite=" + encoded(invitation));
    return redirection(ownPath(visit.value("next")));
}

Response WebSite::signOut(Visit& visit)
{
    visit.database.inTransaction(
        [&] { visit.database.execute("DELETE FROM web_sessions WHERE digest = ?", digestOf(visit.sessionToken)); });
    visit.setCookie(sessionCookie, "", std::chrono::seconds{0});
    return redirection("/?notice=signed-out");
}

Response WebSite::invite(Visit& visit)
{
    const auto code = visit.value("code");
    if (!visit.visitor)
        return redirection(std::string{signInPath} + "?invite=" + encoded(code));
    auto& database = visit.database;
    const auto& userId = visit.visitor->id;
    std::string fault;
    const auto connection = database.inTransaction([&]() -> std::optional<SharingConnection> {
        Attempts attempts{database, "sharing-code"};
        const auto attempt = attempts.take({userId, networkOf(visit.request.address)}, visit.now);
        fault = attempt ? "" : "errorTooManyTries";
        if (!attempt)
            return std::nullopt;
        auto linked = linkWithCode(database, userId, code, visit.now);
        if (linked || linked.error() == LinkFault::ownCode)
            attempts.giveBack(*attempt);
        if (linked)
            return *linked;
        fault = linked.error() == LinkFault::ownCode ? "errorInviteOwn" : "errorInviteUnknown";
        return std::nullopt;
    });
    if (!connection)
        return message(visit, "isError", "errorHeading", fault, fault == "errorTooManyTries" ? 429 : 400);
    return message(
        visit, "isSuccess", "linkedHeading", "linkedText", 200, {{"name", connection->controlledName.value_or("")}});
}

/// The device that waits with this code; or the key of the text that says why there is none.
std::expected<WaitingDevice, std::string> WebSite::waitingDevice(Visit& visit, const std::string& code)
{
    auto& database = visit.database;
    return database.inTransaction([&]() -> std::expected<WaitingDevice, std::string> {
        Attempts attempts{database, "user-code"};
        const auto attempt = attempts.take({visit.visitor->id, networkOf(visit.request.address)}, visit.now);
        if (!attempt)
            return std::unexpected{"errorTooManyTries"};
        const auto device = DeviceCodes{database}.waiting(code, visit.now);
        if (!device)
            return std::unexpected{"errorCodeUnknown"};
        attempts.giveBack(*attempt);
        return *device;
    });
}

Response WebSite::devicePage(Visit& visit)
{
    const auto code = visit.value("user_code");
    if (!visit.visitor)
        return redirection(std::string{signInPath} +
            "?next=" + encoded(code.empty() ? devicePath : devicePath + ("?user_code=" + encoded(code))));
    return code.empty() ? deviceCodePage(visit, "") : approvalPage(visit, code);
}

Response WebSite::deviceCodePage(Visit& visit, const std::string& errorKey)
{
    PageData data{PageData::type::object};
    data.set("userCode", visit.value("user_code"));
    if (!errorKey.empty())
        data.set("error", m_texts.text(visit.language, errorKey));
    return page(visit, "device-code", "titleDeviceCode", std::move(data), statusOf(errorKey));
}

Response WebSite::approvalPage(Visit& visit, const std::string& code)
{
    const auto device = waitingDevice(visit, code);
    if (!device)
        return deviceCodePage(visit, device.error());
    const auto minutes = std::chrono::floor<std::chrono::minutes>(visit.now - device->createdAt).count();
    PageData data{PageData::type::object};
    data.set("userCode", device->userCode);
    data.set("address", device->address);
    data.set("askedAgo",
        minutes < 1 ? m_texts.text(visit.language, "askedJustNow")
                    : m_texts.text(visit.language, "askedMinutesAgo", {{"minutes", std::to_string(minutes)}}));
    return page(visit, "device-approve", "titleDeviceApprove", std::move(data));
}

Response WebSite::decideDevice(Visit& visit)
{
    if (!visit.visitor)
        return redirection(std::string{signInPath} + "?next=" + encoded(devicePath));
    const auto decision = visit.value("decision");
    const bool isApproved = decision == "approve";
    if (!isApproved && decision != "deny")
        throw Refusal{400, "Neither approved nor denied"};
    const auto device = waitingDevice(visit, visit.value("user_code"));
    if (!device)
        return message(visit, "isError", "errorHeading", device.error(), statusOf(device.error()));
    const bool isDecided = visit.database.inTransaction(
        [&] { return DeviceCodes{visit.database}.decide(device->userCode, visit.visitor->id, isApproved, visit.now); });
    if (!isDecided)
        return message(visit, "isError", "errorHeading", "errorCodeUnknown", 404);
    return isApproved ? message(visit, "isSuccess", "approvedHeading", "approvedText")
                      : message(visit, "isDenied", "deniedHeading", "deniedText");
}

Response WebSite::setTimeZone(Visit& visit)
{
    if (!visit.visitor)
        return redirection(signInPath);
    const auto timeZone = visit.value("timeZone");
    if (!isTimeZone(timeZone))
        return message(visit, "isError", "errorHeading", "errorTimeZone", 400);
    // THREAT: a new day somewhere else is a new day's limit.
    if (visit.database.inSnapshot([&] { return isHeldPermanently(visit.database, visit.visitor->id); }))
        return message(visit, "isDenied", "errorHeading", "errorTimeZoneHeld", 403);
    visit.database.inTransaction(
        [&] { visit.database.execute("UPDATE users SET time_zone = ? WHERE id = ?", timeZone, visit.visitor->id); });
    return redirection("/?notice=time-zone");
}

} // namespace stillgate::server
