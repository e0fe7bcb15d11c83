#pragma once

#include "tests/support/TemporaryFolder.h"
#include "tests/support/Waiting.h"

#include <QProcess>

#include <functional>
#include <optional>
#include <string>

namespace stillgate::test
{

/// A user's settings and data, and the environment of a program that works with them. No backend answers there unless a
/// test says otherwise.
class ApplicationHome
{
public:
    ApplicationHome();

    /// Setup is complete and a session is stored, without any rule.
    void putSession() const;

    /// From now on the home and its programs are those of another user, who has a session bus.
    void giveTo(uid_t owner, const std::string& busAddress);

    [[nodiscard]] std::filesystem::path path() const { return m_folder.path(); }

    [[nodiscard]] std::filesystem::path settings() const;
    [[nodiscard]] std::filesystem::path usage() const;
    [[nodiscard]] std::filesystem::path token(const std::string& kind) const;

    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    uid_t user = 0; ///< whom the programs run as

private:
    TemporaryFolder m_folder;
};

/// A program as a process of its own, killed with this object. What it prints and logs is kept.
class ApplicationProcess
{
public:
    explicit ApplicationProcess(
        const ApplicationHome& home, const QStringList& arguments = {}, const QString& program = STILLGATE_PROGRAM);
    ~ApplicationProcess();

    ApplicationProcess(const ApplicationProcess&) = delete;
    ApplicationProcess& operator=(const ApplicationProcess&) = delete;

    [[nodiscard]] bool isRunning() const { return m_process.state() != QProcess::NotRunning; }

    [[nodiscard]] qint64 pid() const { return m_process.processId(); }

    /// Standard output and standard error.
    [[nodiscard]] std::string output();
    [[nodiscard]] bool says(const std::string& text);

    void send(int signal) const;

    /// The exit status; nothing if it goes on running, or if it was a signal that ended it.
    [[nodiscard]] std::optional<int> waitForEnd();

    /// Sends SIGTERM and waits.
    [[nodiscard]] std::optional<int> terminate();

    /// As in a power cut.
    void kill();

private:
    QProcess m_process;
    std::string m_output;
};

/// A visible window of this desktop as xdotool numbers it; empty if no window has the title.
[[nodiscard]] std::string windowTitled(const std::string& title);

/// Whether the window with the keyboard has the title.
[[nodiscard]] bool isInFront(const std::string& title);

/// "360x480+10+20"; empty if it is gone.
[[nodiscard]] std::string placeOf(const std::string& window);

} // namespace stillgate::test
