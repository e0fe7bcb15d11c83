#include "tests/desktop/ApplicationProcess.h"

#include <csignal>
#include <grp.h>
#include <sys/prctl.h>
#include <unistd.h>

namespace stillgate::test
{

namespace
{

constexpr auto folderName = "com.stillgate.macos";

QString text(const std::filesystem::path& path)
{
    return QString::fromStdString(path);
}

} // namespace

ApplicationHome::ApplicationHome()
{
    environment.insert("HOME", text(m_folder.path()));
    environment.insert("XDG_CONFIG_HOME", text(m_folder.path() / "config"));
    environment.insert("XDG_DATA_HOME", text(m_folder.path() / "data"));
    environment.insert("STILLGATE_API_BASE_URL", "https://127.0.0.1:1/v1"); // nobody listens there
    environment.insert("LC_ALL", "C.UTF-8");
}

void ApplicationHome::putSession() const
{
    putFile(settings(), R"({"sg_onboarding_complete":true})");
    putFile(token("access"), "any bytes");
    putFile(token("refresh"), "any bytes");
}

void ApplicationHome::giveTo(uid_t owner, const std::string& busAddress)
{
    user = owner;
    environment.insert("DBUS_SESSION_BUS_ADDRESS", QString::fromStdString(busAddress));
    environment.insert("XDG_RUNTIME_DIR", "/run/user/" + QString::number(owner));
    shell("chown -R " + std::to_string(owner) + " " + m_folder.path().string());
}

std::filesystem::path ApplicationHome::settings() const
{
    return m_folder.path() / "config" / folderName / "defaults.json";
}

std::filesystem::path ApplicationHome::usage() const
{
    return m_folder.path() / "data" / folderName / "screentime/usage.dat";
}

std::filesystem::path ApplicationHome::token(const std::string& kind) const
{
    return m_folder.path() / "data" / folderName / "secure" / ("sg%5F" + kind + "%5Ftoken");
}

ApplicationProcess::ApplicationProcess(
    const ApplicationHome& home, const QStringList& arguments, const QString& program)
{
    m_process.setProcessEnvironment(home.environment);
    m_process.setProcessChannelMode(QProcess::MergedChannels);
    m_process.setChildProcessModifier([user = home.user] {
        if (user != 0 && (::setgroups(0, nullptr) != 0 || ::setgid(user) != 0 || ::setuid(user) != 0))
            ::_exit(EXIT_FAILURE);
        ::prctl(PR_SET_PDEATHSIG, SIGKILL); // which another user's process has to ask for anew
    });
    m_process.start(program, arguments);
    if (!m_process.waitForStarted())
        throw std::runtime_error{"can't start " + program.toStdString()};
}

ApplicationProcess::~ApplicationProcess()
{
    kill();
}

std::string ApplicationProcess::output()
{
    m_output += m_process.readAll().toStdString();
    return m_output;
}

bool ApplicationProcess::says(const std::string& text)
{
    return becomes([&] { return output().contains(text); });
}

void ApplicationProcess::send(int signal) const
{
    if (isRunning())
        ::kill(static_cast<pid_t>(m_process.processId()), signal);
}

std::optional<int> ApplicationProcess::waitForEnd()
{
    if (!becomes([this] { return !isRunning(); }) || m_process.exitStatus() == QProcess::CrashExit)
        return std::nullopt;
    return m_process.exitCode();
}

std::optional<int> ApplicationProcess::terminate()
{
    send(SIGTERM);
    return waitForEnd();
}

void ApplicationProcess::kill()
{
    m_process.kill();
    m_process.waitForFinished();
}

std::string windowTitled(const std::string& title)
{
    return shell("xdotool search --onlyvisible --name '^" + title + "$' | head -n 1 | tr -d '\\n'");
}

bool isInFront(const std::string& title)
{
    return shell("xdotool getactivewindow getwindowname 2>/dev/null") == title + '\n';
}

std::string placeOf(const std::string& window)
{
    return shell("eval \"$(xdotool getwindowgeometry --shell " + window +
        " 2>/dev/null)\"; [ -z \"$WINDOW\" ] || printf %s \"${WIDTH}x$HEIGHT+$X+$Y\"");
}

} // namespace stillgate::test
