#pragma once

#include "Platform/Linux/Desktop/X11Workspace.h"
#include "Platform/Memory/ManualTime.h"
#include "Platform/Memory/MemoryLog.h"
#include "tests/desktop/X11TestWindow.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Waiting.h"

#include <QProcess>
#include <gmock/gmock.h>

#include <csignal>

namespace stillgate::test
{

using Names = std::vector<std::string>;

inline std::string nameOf(const std::shared_ptr<RunningApplication>& application)
{
    return application ? application->bundleIdentifier().value_or("unknown") : "nothing";
}

/// A program of this machine, ended with this object.
class Program
{
public:
    explicit Program(const QStringList& command)
    {
        m_process.setStandardErrorFile(QProcess::nullDevice());
        m_process.start(command.first(), command.sliced(1));
        if (!m_process.waitForStarted())
            throw std::runtime_error{"can't start " + command.first().toStdString()};
    }

    ~Program() { end(); }

    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    void end()
    {
        m_process.kill();
        m_process.waitForFinished();
    }

    [[nodiscard]] bool hasEnded(std::chrono::milliseconds limit = std::chrono::seconds{10})
    {
        return m_process.state() == QProcess::NotRunning || m_process.waitForFinished(static_cast<int>(limit.count()));
    }

    [[nodiscard]] int pid() const { return static_cast<int>(m_process.processId()); }

    /// The first line that it prints.
    std::string line()
    {
        while (!m_process.canReadLine() && m_process.waitForReadyRead(10'000)) {
        }
        return m_process.readLine().trimmed().toStdString();
    }

private:
    QProcess m_process;
};

/// Time stands still, unless a test moves it: a window manager that is slow between two windows does no harm.
class X11 : public testing::Test
{
protected:
    void SetUp() override
    {
        if (::getenv("STILLGATE_PRIVATE_DESKTOP") == nullptr)
            throw std::runtime_error{"run by scripts/private-desktop only: it opens windows"};
        std::signal(SIGPIPE, SIG_IGN);
        putEntry("org.example.Alpha", "StartupWMClass=ALPHA-window");
        putEntry("org.example.Beta", "Icon=beta");
        putEntry("debian-xterm", "StartupWMClass=XTerm");
        putEntry("org.xfce.mousepad", "");
        m_workspace = newWorkspace();
        observe();
    }

    void TearDown() override { ::qputenv("DISPLAY", m_display); }

    std::unique_ptr<X11Workspace> newWorkspace()
    {
        return std::make_unique<X11Workspace>(X11Connection::open(), X11Connection::open(), m_entries, m_time, m_log);
    }

    void putEntry(const std::string& id, const std::string& line)
    {
        putFile(m_folder.path() / "applications" / (id + ".desktop"),
            "[Desktop Entry]\nType=Application\nName=" + id + " by name\nExec=true\n" + line + "\n");
    }

    void observe()
    {
        m_observations.push_back(
            m_workspace->onActivation([this](const auto& application) { m_activated.push_back(nameOf(application)); }));
        m_observations.push_back(
            m_workspace->onLaunch([this](const auto& application) { m_launched.push_back(nameOf(application)); }));
    }

    [[nodiscard]] std::string front() const { return nameOf(m_workspace->frontmostApplication()); }

    bool comesToFront(const std::string& name)
    {
        return becomes([&] { return front() == name; });
    }

    bool isShown(const X11TestWindow& window)
    {
        window.show();
        return becomes([&] { return window.isActive(); });
    }

    bool isActivated(const X11TestWindow& window)
    {
        window.activate();
        return becomes([&] { return window.isActive(); });
    }

    /// A window manager that knows all windows that are there, in the place of another one if there is one.
    std::unique_ptr<Program> newWindowManager()
    {
        const auto ready = m_folder.path() / "ready";
        std::filesystem::remove(ready);
        auto program = std::make_unique<Program>(QStringList{
            "openbox", "--replace", "--sm-disable", "--startup", QString::fromStdString("touch " + ready.string())});
        EXPECT_TRUE(becomes([&] { return std::filesystem::exists(ready); }));
        return program;
    }

    /// What a window manager says, where a test says it in its place.
    void claim(const std::string& property, const std::vector<uint32_t>& windows) const
    {
        putNumbers(*m_root, m_root->root(), property, windows);
    }

    QByteArray m_display = ::qgetenv("DISPLAY");
    TemporaryFolder m_folder;
    DesktopEntries m_entries{{m_folder.path()}};
    ManualTime m_time;
    MemoryLog m_log;
    std::unique_ptr<X11Connection> m_root = X11Connection::open();
    std::unique_ptr<X11Workspace> m_workspace;
    std::vector<std::unique_ptr<Observation>> m_observations;
    Names m_activated;
    Names m_launched;
};

} // namespace stillgate::test
