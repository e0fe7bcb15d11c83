#pragma once

#include "Platform/Task.h"
#include "tests/support/TemporaryFolder.h"

#include <QNetworkAccessManager>
#include <QProcess>
#include <nlohmann/json.hpp>

#include <functional>
#include <string>
#include <vector>

namespace stillgate::test
{

/// Keys that aren't letters (WebDriver, 17.4.2).
inline constexpr auto tabKey = "\uE004";
inline constexpr auto enterKey = "\uE007";

/// A real Chromium without a window, driven through chromedriver (W3C WebDriver). It has a profile of its own, reaches
/// nothing but this machine, and ends with this object.
///
/// Elements are named by CSS selectors. What isn't there yet is waited for, and whatever can't be done within
/// 15 seconds throws std::runtime_error with what the browser says about it, which fails the test.
class Browser
{
public:
    /// What it asks the sites for: "tr", "en-GB".
    explicit Browser(const std::string& acceptLanguage = "en");
    ~Browser();

    Browser(const Browser&) = delete;
    Browser& operator=(const Browser&) = delete;

    /// The size of the page in CSS pixels, as exactly as on a device with such a screen: a window has a least width.
    void setViewport(int width, int height);

    /// Comes back when the page has loaded, as everything does that leads to another page, but for `press`.
    void open(const std::string& url);
    void click(const std::string& css);

    /// Into a field in place of what is in it.
    void type(const std::string& css, const std::string& text);

    /// Into whatever has the focus: letters, or one of the keys above.
    void press(const std::string& keys);

    /// Does what leads to another page, and comes back when that has loaded.
    void follow(const std::function<void()>& step);

    /// Waits until there is such an element.
    void waitFor(const std::string& css);

    [[nodiscard]] bool has(const std::string& css);

    /// As people see it.
    [[nodiscard]] std::string text(const std::string& css);

    /// Empty if the element has no such attribute.
    [[nodiscard]] std::string attribute(const std::string& css, const std::string& name);

    [[nodiscard]] std::string url();
    [[nodiscard]] std::string title();

    /// What the body of a JavaScript function returns.
    [[nodiscard]] nlohmann::json evaluate(const std::string& script);

    /// What the browser has complained of since the last call: broken scripts, blocked resources, failed requests.
    [[nodiscard]] std::vector<std::string> takeComplaints();

    /// The whole page, also what is below the fold, as PNG.
    void screenshot(const std::filesystem::path& file);

private:
    void startDriver();
    void startSession(const std::string& acceptLanguage);

    /// A command of the session, with "GET", "POST" or "DELETE"; the path "" is the session itself. Throws with the
    /// answer's message if it is an error.
    nlohmann::json command(const char* method, const std::string& path, const nlohmann::json& body = nullptr);

    /// A command of Chromium's own protocol.
    nlohmann::json chromium(const std::string& name, const nlohmann::json& parameters);

    Task<QByteArray> exchange(const char* method, std::string path, QByteArray body);

    [[nodiscard]] std::string element(const std::string& css);

    TemporaryFolder m_home;
    QProcess m_driver;
    QNetworkAccessManager m_network;
    std::string m_address; ///< of the driver, then of the session
};

} // namespace stillgate::test
