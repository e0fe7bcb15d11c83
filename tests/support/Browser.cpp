#include "tests/support/Browser.h"

#include "Platform/OneShotEvent.h"
#include "tests/support/Await.h"

#include <QNetworkReply>
#include <QRegularExpression>

#include <csignal>
#include <stdexcept>
#include <sys/prctl.h>

namespace stillgate::test
{

namespace
{

using nlohmann::json;

constexpr int longestWait = 15'000; ///< milliseconds

/// The key under which an element's id stands (WebDriver, 12).
constexpr auto elementKey = "element-6066-11e4-a52e-4f735466cecf";

json chromiumOptions(const std::filesystem::path& profile, const std::string& acceptLanguage)
{
    // The first two: there is no screen, and tests may run as root. The others keep it from the network.
    return {{"args",
        {"--headless=new", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage", "--disable-quic",
            "--no-first-run", "--disable-background-networking", "--disable-component-update", "--disable-sync",
            "--no-proxy-server", "--host-resolver-rules=MAP * ~NOTFOUND, EXCLUDE localhost, EXCLUDE 127.0.0.1",
            "--hide-scrollbars", "--accept-lang=" + acceptLanguage, "--user-data-dir=" + profile.string()}}};
}

json keyActions(const std::string& keys)
{
    json actions = json::array();
    for (const auto key : QString::fromStdString(keys).toUcs4()) {
        const auto value = QString::fromUcs4(reinterpret_cast<const char32_t*>(&key), 1).toStdString();
        actions.push_back({{"type", "keyDown"}, {"value", value}});
        actions.push_back({{"type", "keyUp"}, {"value", value}});
    }
    return {{"actions", {{{"type", "key"}, {"id", "keyboard"}, {"actions", actions}}}}};
}

} // namespace

Browser::Browser(const std::string& acceptLanguage)
{
    startDriver();
    startSession(acceptLanguage);
}

Browser::~Browser()
{
    try {
        command("DELETE", "");
    } catch (const std::exception&) { // it has crashed, perhaps: then there is nothing to close
    }
    m_driver.terminate();
    m_driver.waitForFinished(longestWait); // or else it is killed with the object
}

void Browser::startDriver()
{
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert("HOME", QString::fromStdString(m_home.path()));
    m_driver.setProcessEnvironment(environment);
    m_driver.setProcessChannelMode(QProcess::MergedChannels);
    // A test that crashes leaves no browser behind: the driver takes it along.
    m_driver.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGTERM); });
    m_driver.start("chromedriver", {"--port=0"});
    static const QRegularExpression announcement{R"(started successfully on port (\d+))"};
    QString output;
    for (;;) {
        output += m_driver.readAll();
        if (const auto match = announcement.match(output); match.hasMatch()) {
            m_address = "http://127.0.0.1:" + match.captured(1).toStdString();
            return;
        }
        if (!m_driver.waitForReadyRead(longestWait))
            throw std::runtime_error{"chromedriver doesn't start: " + output.toStdString()};
    }
}

void Browser::startSession(const std::string& acceptLanguage)
{
    const json capabilities{{"browserName", "chrome"}, {"goog:loggingPrefs", {{"browser", "ALL"}}},
        {"goog:chromeOptions", chromiumOptions(m_home.path() / "profile", acceptLanguage)},
        {"timeouts", {{"pageLoad", longestWait}, {"script", longestWait}, {"implicit", longestWait}}}};
    const auto session = command("POST", "/session", {{"capabilities", {{"alwaysMatch", capabilities}}}});
    m_address += "/session/" + session.at("sessionId").get<std::string>();
}

void Browser::setViewport(int width, int height)
{
    chromium("Emulation.setDeviceMetricsOverride",
        {{"width", width}, {"height", height}, {"deviceScaleFactor", 1}, {"mobile", width < 600}});
}

void Browser::open(const std::string& url)
{
    command("POST", "/url", {{"url", url}});
}

void Browser::click(const std::string& css)
{
    command("POST", "/element/" + element(css) + "/click", json::object());
}

void Browser::type(const std::string& css, const std::string& text)
{
    const auto id = element(css);
    command("POST", "/element/" + id + "/clear", json::object());
    command("POST", "/element/" + id + "/value", {{"text", text}});
}

void Browser::press(const std::string& keys)
{
    command("POST", "/actions", keyActions(keys));
}

void Browser::follow(const std::function<void()>& step)
{
    // A new page is a new window object. The driver itself waits until a page that has begun to load has loaded.
    static_cast<void>(evaluate("window.isLeft = true"));
    step();
    const QDeadlineTimer limit{longestWait};
    while (evaluate("return window.isLeft === true || document.readyState !== 'complete'")) {
        if (limit.hasExpired())
            throw std::runtime_error{"The browser stays at " + url()};
    }
}

void Browser::waitFor(const std::string& css)
{
    static_cast<void>(element(css));
}

bool Browser::has(const std::string& css)
{
    return evaluate("return document.querySelector(" + json(css).dump() + ") !== null");
}

std::string Browser::text(const std::string& css)
{
    return command("GET", "/element/" + element(css) + "/text");
}

std::string Browser::attribute(const std::string& css, const std::string& name)
{
    const auto value = command("GET", "/element/" + element(css) + "/attribute/" + name);
    return value.is_null() ? std::string{} : value.get<std::string>();
}

std::string Browser::url()
{
    return command("GET", "/url");
}

std::string Browser::title()
{
    return command("GET", "/title");
}

json Browser::evaluate(const std::string& script)
{
    return command("POST", "/execute/sync", {{"script", script}, {"args", json::array()}});
}

std::vector<std::string> Browser::takeComplaints()
{
    std::vector<std::string> complaints;
    for (const auto& entry : command("POST", "/se/log", {{"type", "browser"}})) {
        if (entry.at("level") == "SEVERE" || entry.at("level") == "WARNING")
            complaints.push_back(entry.at("message"));
    }
    return complaints;
}

void Browser::screenshot(const std::filesystem::path& file)
{
    const auto metrics = chromium("Page.getLayoutMetrics", json::object());
    auto clip = metrics.at("cssContentSize");
    clip["scale"] = 1;
    const auto picture = chromium("Page.captureScreenshot", {{"captureBeyondViewport", true}, {"clip", clip}});
    const auto encoded = QByteArray::fromStdString(picture.at("data").get<std::string>());
    putFile(file, QByteArray::fromBase64(encoded).toStdString());
}

std::string Browser::element(const std::string& css)
{
    return command("POST", "/element", {{"using", "css selector"}, {"value", css}}).at(elementKey);
}

json Browser::chromium(const std::string& name, const json& parameters)
{
    return command("POST", "/goog/cdp/execute", {{"cmd", name}, {"params", parameters}});
}

json Browser::command(const char* method, const std::string& path, const json& body)
{
    const auto sent = body.is_null() ? QByteArray{} : QByteArray::fromStdString(body.dump());
    const auto bytes = await(exchange(method, path, sent));
    const auto answer = json::parse(bytes.begin(), bytes.end(), nullptr, false);
    const auto value = answer.is_object() ? answer.value("value", json{}) : json{};
    const bool isError = value.is_object() && value.contains("error") && value.contains("message");
    if (!answer.is_object() || isError) {
        // The rest of the message is a stack of addresses.
        const auto message = isError ? value.at("message").get<std::string>() : bytes.toStdString();
        throw std::runtime_error{path + ' ' + body.dump() + ": " + message.substr(0, message.find("\nStacktrace"))};
    }
    return value;
}

Task<QByteArray> Browser::exchange(const char* method, std::string path, QByteArray body)
{
    QNetworkRequest message{QUrl{QString::fromStdString(m_address + path)}};
    message.setHeader(QNetworkRequest::ContentTypeHeader, "application/json");
    auto* const reply = m_network.sendCustomRequest(message, method, body);
    OneShotEvent ended;
    QObject::connect(reply, &QNetworkReply::finished, reply, [&ended] { ended.happen(); });
    co_await ended;
    reply->deleteLater();
    auto answer = reply->readAll();
    co_return answer.isEmpty() ? reply->errorString().toUtf8() : answer;
}

} // namespace stillgate::test
