#include "Backend/APIService.h"
#include "Backend/KeychainService.h"
#include "Backend/SecureSession.h"
#include "Platform/Linux/LinuxScheduler.h"
#include "Platform/Memory/MemoryFileManager.h"
#include "Platform/Memory/MemoryLog.h"
#include "tests/server/ServerProcess.h"
#include "tests/support/Await.h"
#include "tests/support/Browser.h"

#include <gmock/gmock.h>

namespace stillgate::test
{

namespace
{

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

struct Person
{
    std::string name;
    std::string email;
    std::string password = "a few quiet words";
};

const Person ada{.name = "Ada Lovelace", .email = "ada@example.test"};
const Person ben{.name = "Ben Holberton", .email = "ben@example.test"};

/// How somebody comes to the site.
struct Visitor
{
    const char* name;
    const char* language;
    const char* otherLanguage;
    int width;
    int height;
};

void PrintTo(const Visitor& visitor, std::ostream* out)
{
    *out << visitor.name;
}

constexpr Visitor englishDesktop{"EnglishDesktop", "en", "tr", 1280, 900};
constexpr Visitor englishPhone{"EnglishPhone", "en", "tr", 390, 844};
constexpr Visitor turkishDesktop{"TurkishDesktop", "tr", "en", 1280, 900};
constexpr Visitor turkishPhone{"TurkishPhone", "tr", "en", 390, 844};

const auto nameOf = [](const auto& test) { return test.param.name; };

/// The application on a computer, as far as its talk with the server goes.
class Device
{
public:
    explicit Device(const ServerProcess& server)
        : m_session(settingsFrom(server), m_notifications, m_scheduler, m_log)
        , client(server.baseURL(), m_session, m_keychain, m_notifications)
    {}

private:
    static SecureSession::Settings settingsFrom(const ServerProcess& server)
    {
        const auto deployment = nlohmann::json::parse(fileBytes(server.folder() / "deployment.json"));
        return {.pinnedHashes = deployment.at("pins"), .extraAnchor = deployment.at("trustAnchor").get<std::string>()};
    }

    LinuxScheduler m_scheduler;
    NotificationCenter m_notifications;
    MemoryLog m_log;
    MemoryFileManager m_files;
    KeychainService m_keychain{m_files};
    SecureSession m_session;

public:
    APIService client;
};

/// What the page itself can tell about its layout: each line is a fault.
constexpr auto findFaults = R"(
    const faults = [];
    const page = document.documentElement;
    if (page.scrollWidth > window.innerWidth)
        faults.push(`it scrolls sideways: ${page.scrollWidth} > ${window.innerWidth}`);
    if (document.querySelectorAll('h1').length !== 1)
        faults.push('it has not one heading');
    if (document.body.innerText.includes('{') || document.body.innerText.includes('undefined'))
        faults.push('it shows a placeholder');
    if (getComputedStyle(document.body).display !== 'flex')
        faults.push('its style sheet is missing');
    for (const control of document.querySelectorAll('input:not([type=hidden]), select'))
        if (control.labels.length === 0)
            faults.push(`${control.id} has no label`);
    for (const control of document.querySelectorAll('a:not(.skip-link), button, input:not([type=hidden]), select')) {
        const box = control.getBoundingClientRect();
        if (box.height < 44 || box.left < 0 || box.right > window.innerWidth)
            faults.push(`a finger misses ${control.outerHTML}: ${box.width} x ${box.height} at ${box.left}`);
    }
    return faults;)";

constexpr auto focusedControl = "const focused = document.activeElement;"
                                "return focused.id || focused.getAttribute('href') || focused.textContent.trim();";

} // namespace

class SiteInBrowser : public testing::TestWithParam<Visitor>
{
protected:
    explicit SiteInBrowser(const Visitor& visitor = GetParam())
        : m_visitor(visitor)
        , m_browser(visitor.language)
    {
        m_browser.setViewport(visitor.width, visitor.height);
    }

    void open(const std::string& path) { m_browser.open(address(path)); }

    [[nodiscard]] std::string address(const std::string& path) const
    {
        return "http://127.0.0.1:" + std::to_string(m_server.sitePort()) + path;
    }

    /// Clicks on what leads to another page.
    void go(const std::string& css)
    {
        m_browser.follow([&] { m_browser.click(css); });
    }

    /// Looks at the page as it stands, and keeps a picture of it.
    void look(const std::string& name)
    {
        SCOPED_TRACE(name + " at " + m_browser.url());
        m_browser.screenshot(
            std::filesystem::path{STILLGATE_SHOTS} / (name + '-' + m_visitor.language + '-' + sizeName() + ".png"));
        EXPECT_EQ(m_browser.evaluate("return window.innerWidth"), m_visitor.width);
        EXPECT_EQ(m_browser.attribute("html", "lang"), m_visitor.language);
        EXPECT_THAT(m_browser.title(), HasSubstr("Stillgate"));
        EXPECT_THAT(m_browser.evaluate(findFaults).get<std::vector<std::string>>(), IsEmpty());
        EXPECT_THAT(complaints(), IsEmpty());
    }

    void signUp(const Person& person)
    {
        m_browser.type("#display-name", person.name);
        m_browser.type("#email", person.email);
        m_browser.type("#password", person.password);
        go("main button");
    }

    void signIn(const Person& person)
    {
        m_browser.type("#email", person.email);
        m_browser.type("#password", person.password);
        go("main button");
    }

    void signUpAndLeave(const Person& person)
    {
        open("/src/pages/auth/signup.html");
        signUp(person);
        go(".session button");
    }

    void expectSignedIn(const Person& person)
    {
        EXPECT_EQ(m_browser.url(), address("/"));
        EXPECT_EQ(m_browser.text(".page-heading .email"), person.email);
    }

    DeviceCodeResponse requestCode() { return await(m_device.client.requestDeviceCode()).value(); }

    std::string poll(const DeviceCodeResponse& code)
    {
        const auto answer = await(m_device.client.pollDeviceCode(code.deviceCode)).value();
        if (answer.accessToken)
            m_device.client.setTokens(*answer.accessToken, answer.refreshToken.value());
        return answer.status;
    }

    const Visitor m_visitor;
    ServerProcess m_server;
    Device m_device{m_server};
    Browser m_browser;

private:
    [[nodiscard]] std::string sizeName() const { return m_visitor.width < 600 ? "phone" : "desktop"; }

    /// Without those about the status of the page itself.
    std::vector<std::string> complaints()
    {
        auto lines = m_browser.takeComplaints();
        std::erase_if(lines, [](const auto& line) {
            return line.contains("the server responded with a status of 4") && !line.contains("/assets/");
        });
        return lines;
    }
};

TEST_P(SiteInBrowser, accountIsMadeLeftAndEnteredAgain)
{
    open("/");
    look("home");
    go("a[href*=signup]");
    look("sign-up");
    signUp(ada);
    expectSignedIn(ada);
    look("account");

    m_browser.click("#time-zone option[value='Asia/Tokyo']");
    go("form[action='/time-zone'] button");
    m_browser.waitFor(".banner-success");
    EXPECT_EQ(m_browser.text("#time-zone option[selected]"), "Asia/Tokyo");
    look("account-time-zone");

    go(".session button");
    m_browser.waitFor(".banner-success");
    EXPECT_FALSE(m_browser.has(".session"));
    look("home-signed-out");

    open("/src/pages/auth/signup.html");
    signUp(ada);
    m_browser.waitFor("[role=alert]");
    look("sign-up-taken");

    go(".card-foot a");
    signIn({.name = ada.name, .email = ada.email, .password = "a few loud words"});
    m_browser.waitFor("[role=alert]");
    EXPECT_EQ(m_browser.evaluate("return document.querySelector('#email').value"), ada.email);
    EXPECT_EQ(m_browser.evaluate("return document.querySelector('#password').value"), "");
    look("sign-in-wrong");
    signIn(ada);
    expectSignedIn(ada);

    open("/no-such-page");
    m_browser.waitFor(".badge-error");
    look("not-found");
}

TEST_P(SiteInBrowser, deviceIsLetInOrKeptOut)
{
    signUpAndLeave(ada);

    const auto approved = requestCode();
    EXPECT_EQ(poll(approved), "pending");
    m_browser.open(approved.verificationUrlComplete.value());
    look("sign-in");
    signIn(ada);
    EXPECT_EQ(m_browser.text(".code"), approved.userCode);
    look("device-approve");
    go("button[value=approve]");
    m_browser.waitFor(".badge-success");
    look("device-approved");
    EXPECT_EQ(poll(approved), "approved");
    EXPECT_EQ(await(m_device.client.getMe({})).value().email, ada.email);

    const auto denied = requestCode();
    go("main a[href='/']");
    auto typed = QString::fromStdString(denied.userCode).toLower().remove('-').toStdString();
    m_browser.type("#user-code", typed);
    go("form[action='/device'] button");
    EXPECT_EQ(m_browser.text(".code"), denied.userCode);
    go("button[value=deny]");
    m_browser.waitFor(".badge-denied");
    look("device-denied");
    EXPECT_EQ(poll(denied), "denied");

    open("/device");
    look("device-code");
    m_browser.type("#user-code", denied.userCode);
    go("main button");
    m_browser.waitFor("[role=alert]");
    EXPECT_EQ(m_browser.attribute("#user-code", "aria-invalid"), "true");
    look("device-code-wrong");
    const auto right = requestCode();
    m_browser.press(right.userCode);
    m_browser.follow([&] { m_browser.press(enterKey); });
    EXPECT_EQ(m_browser.text(".code"), right.userCode) << "it is typed over the wrong one";
}

TEST_P(SiteInBrowser, invitationMakesAGuardian)
{
    signUpAndLeave(ada);
    const auto code = requestCode();
    m_browser.open(code.verificationUrlComplete.value());
    signIn(ada);
    go("button[value=approve]");
    EXPECT_EQ(poll(code), "approved");
    const auto invitation = await(m_device.client.generateSharingCode()).value().code;
    go(".session button");

    open("/src/pages/auth/login.html?invite=" + invitation);
    look("invite-sign-in");
    go(".card-foot a");
    look("invite-sign-up");
    signUp(ben);
    EXPECT_THAT(await(m_device.client.getSharingConnections({})).value(), IsEmpty()) << "signing up accepts nothing";
    look("invite");
    go("main button");
    m_browser.waitFor(".badge-success");
    EXPECT_THAT(m_browser.text(".lede"), HasSubstr(ada.name));
    look("invite-accepted");
    EXPECT_TRUE(m_browser.has("main a[href='/']"));
    const auto connections = await(m_device.client.getSharingConnections({})).value();
    ASSERT_EQ(connections.size(), 1);
    EXPECT_EQ(connections.front().role, "controlled");
    EXPECT_EQ(connections.front().controllerName, ben.name);

    open("/src/pages/auth/login.html?invite=" + invitation);
    go("main button");
    m_browser.waitFor(".badge-error");
    look("invite-used");
}

INSTANTIATE_TEST_SUITE_P(
    As, SiteInBrowser, testing::Values(englishPhone, englishDesktop, turkishPhone, turkishDesktop), nameOf);

class SiteInLanguage : public SiteInBrowser
{};

TEST_P(SiteInLanguage, languageIsChangedAndKept)
{
    open("/");
    const auto heading = m_browser.text("h1");
    go(".languages a[lang=" + std::string{m_visitor.otherLanguage} + "]");
    const auto otherHeading = m_browser.text("h1");
    EXPECT_NE(otherHeading, heading);

    open("/src/pages/auth/signup.html");
    EXPECT_EQ(m_browser.attribute("html", "lang"), m_visitor.otherLanguage) << "the browser keeps it";
    signUp(ada);
    EXPECT_EQ(m_browser.attribute("html", "lang"), m_visitor.otherLanguage);

    go(".languages a[lang=" + std::string{m_visitor.language} + "]");
    go(".session button");
    EXPECT_EQ(m_browser.text("h1"), heading);
}

INSTANTIATE_TEST_SUITE_P(As, SiteInLanguage, testing::Values(englishDesktop, turkishPhone), nameOf);

class SiteByKeyboard : public SiteInBrowser
{
protected:
    SiteByKeyboard()
        : SiteInBrowser(englishDesktop)
    {}

    /// The next control that has the focus, and shows it.
    std::string tab()
    {
        m_browser.press(tabKey);
        const auto name = m_browser.evaluate(focusedControl).get<std::string>();
        const auto outline = m_browser.evaluate("const style = getComputedStyle(document.activeElement);"
                                                "return style.outlineStyle === 'none' ? '0px' : style.outlineWidth");
        EXPECT_EQ(outline, "2px") << name;
        return name;
    }

    void tabTo(const std::string& name)
    {
        for (int steps = 0; tab() != name; ++steps)
            ASSERT_LT(steps, 20) << "nothing leads to " << name;
    }
};

TEST_F(SiteByKeyboard, everythingIsReachedInItsOrder)
{
    signUpAndLeave(ada);
    open("/src/pages/auth/login.html");
    std::vector<std::string> order;
    for (int count = 0; count < 8; ++count)
        order.push_back(tab());
    EXPECT_THAT(order,
        ElementsAre("#content", "/", HasSubstr("lang=en"), HasSubstr("lang=tr"), "email", "password", "Sign in",
            HasSubstr("signup")));
}

TEST_F(SiteByKeyboard, deviceIsLetIn)
{
    signUpAndLeave(ada);
    const auto code = requestCode();
    m_browser.open(code.verificationUrlComplete.value());

    tabTo("#content");
    m_browser.press(enterKey);
    EXPECT_EQ(tab(), "email") << "the skip link leads past the header";
    m_browser.press(ada.email);
    tabTo("password");
    m_browser.press(ada.password);
    m_browser.follow([&] { m_browser.press(enterKey); });

    tabTo("Approve");
    m_browser.follow([&] { m_browser.press(enterKey); });
    EXPECT_EQ(poll(code), "approved");
}

} // namespace stillgate::test
