#pragma once

#include "Accounts/DeviceCodes.h"
#include "Accounts/Secrets.h"
#include "Accounts/Users.h"
#include "Database/Database.h"
#include "HTTP/Message.h"
#include "Platform/Clock.h"
#include "Platform/Log.h"
#include "Texts/Texts.h"
#include "Web/Page.h"

#include <optional>
#include <string>

namespace stillgate::server
{

/// The pages: sign up, sign in, approve a device, accept an invitation.
///
/// THREAT: the forms act in the name of whoever is signed in. Each carries a token that follows from two cookies of
/// the visitor's own, so that another site can't make one; a form that says it comes from elsewhere is refused first.
class WebSite
{
public:
    WebSite(const Texts& texts, const Clock& clock, Log& log, PasswordCost passwordCost);

    /// Never throws.
    [[nodiscard]] Response answer(const Request& request, Database& database);

    static constexpr auto signInPath = "/src/pages/auth/login.html";
    static constexpr auto signUpPath = "/src/pages/auth/signup.html";
    static constexpr auto devicePath = "/device";

private:
    struct Visit;
    struct Path;

    [[nodiscard]] Response run(Visit& visit);
    void identify(Visit& visit);

    [[nodiscard]] Response home(Visit& visit);
    [[nodiscard]] Response signInPage(Visit& visit);
    [[nodiscard]] Response signIn(Visit& visit);
    [[nodiscard]] Response signUpPage(Visit& visit);
    [[nodiscard]] Response signUp(Visit& visit);
    [[nodiscard]] Response signOut(Visit& visit);
    [[nodiscard]] Response invite(Visit& visit);
    [[nodiscard]] Response devicePage(Visit& visit);
    [[nodiscard]] Response decideDevice(Visit& visit);
    [[nodiscard]] Response setTimeZone(Visit& visit);

    [[nodiscard]] std::expected<WaitingDevice, std::string> waitingDevice(Visit& visit, const std::string& code);
    [[nodiscard]] Response deviceCodePage(Visit& visit, const std::string& errorKey);
    [[nodiscard]] Response approvalPage(Visit& visit, const std::string& code);
    [[nodiscard]] std::optional<std::string> userWithPassword(Visit& visit);
    [[nodiscard]] Response enter(Visit& visit, const std::string& userId);
    [[nodiscard]] Response page(
        Visit& visit, const std::string& name, const std::string& titleKey, PageData data, int status = 200) const;
    [[nodiscard]] Response formAgain(Visit& visit, const std::string& name, const std::string& titleKey,
        const std::string& errorKey, int status) const;
    [[nodiscard]] Response message(Visit& visit, const char* kind, const std::string& heading, const std::string& text,
        int status = 200, const Texts::Values& values = {}) const;
    [[nodiscard]] Response failure(Visit& visit, int status) const;

    const Texts& m_texts;
    const Clock& m_clock;
    Log& m_log;
    PasswordCost m_passwordCost;
    std::string m_unknownUserHash; ///< so that an unknown address takes as long as a known one
};

} // namespace stillgate::server
