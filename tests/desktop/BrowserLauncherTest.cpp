#include "Platform/Linux/Desktop/BrowserLauncher.h"

#include "Platform/Memory/MemoryLog.h"
#include "tests/support/TemporaryFolder.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <gmock/gmock.h>

#include <csignal>

namespace stillgate
{

using namespace test;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

/// With an xdg-open that writes down how it was started.
class Browser : public testing::Test
{
protected:
    void SetUp() override
    {
        const auto program = m_folder.path() / "xdg-open";
        putFile(program,
            "#!/bin/bash\n"
            "cd \"${0%/*}\"\n"
            "printf '%s\\n' \"$@\" >arguments\n"
            "sed -n 's/^SigBlk://p' /proc/$$/status >blocked\n"
            "sed -n 's/^SigIgn://p' /proc/$$/status >ignored\n"
            "ls /proc/$$/fd >files\n"
            "cut -d' ' -f6 /proc/$$/stat >session\n"
            "echo $$ >pid\n");
        std::filesystem::permissions(program, std::filesystem::perms::all);
        ::qputenv("PATH", (m_folder.path().string() + ':').c_str() + m_path);
        pthread_sigmask(SIG_SETMASK, nullptr, &m_signalMask);
    }

    void TearDown() override
    {
        ::qputenv("PATH", m_path);
        pthread_sigmask(SIG_SETMASK, &m_signalMask, nullptr);
    }

    std::string written(const std::string& file) const { return fileBytes(m_folder.path() / file); }

    uint64_t signals(const std::string& file) const { return std::stoull(written(file), nullptr, 16); }

    static uint64_t bitOf(int signal) { return uint64_t{1} << (signal - 1); }

    bool hasEnded() const
    {
        const auto pid = written("pid");
        return pid.ends_with('\n') && ::kill(std::stoi(pid), 0) != 0;
    }

    QByteArray m_path = ::qgetenv("PATH");
    sigset_t m_signalMask{};
    TemporaryFolder m_folder;
    MemoryLog m_log;
};

TEST_F(Browser, startsWithNothingOfOurs)
{
    std::signal(SIGPIPE, SIG_IGN);
    sigset_t heldBack;
    sigemptyset(&heldBack);
    sigaddset(&heldBack, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &heldBack, nullptr);

    openInBrowser("https://example.org/a?b=$(id)&c='%20é", m_log);
    EXPECT_THAT(m_log.lines, IsEmpty());
    const QDeadlineTimer limit{std::chrono::seconds{10}};
    while (!hasEnded() && !limit.hasExpired())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 10);
    ASSERT_TRUE(hasEnded()) << "and is no zombie";

    EXPECT_EQ(written("arguments"), "https://example.org/a?b=$(id)&c='%20%C3%A9\n");
    EXPECT_EQ(signals("blocked") & bitOf(SIGTERM), 0U);
    EXPECT_EQ(signals("ignored") & bitOf(SIGPIPE), 0U);
    EXPECT_EQ(written("files"), "0\n1\n2\n255\n") << "255 is the script itself";
    EXPECT_EQ(std::stoi(written("session")), std::stoi(written("pid"))) << "it leads a session of its own";
}

TEST_F(Browser, getsNothingButAddressesOfTheWeb)
{
    for (const auto* url : {"", "-h", "file:///etc/passwd", "javascript:alert(1)", "https:", "https://", "example.org",
             "mailto:a@example.org", "https://exa mple.org/", "https://example.org/`id`", "http://[::1/",
             "ftp://example.org/"}) {
        m_log.lines.clear();
        openInBrowser(url, m_log);
        EXPECT_THAT(m_log.lines, ElementsAre("[Workspace] Not opened: no http or https address")) << url;
    }
}

TEST_F(Browser, missingProgramIsLoggedWithoutTheAddress)
{
    ::qputenv("PATH", "/nonexistent");
    openInBrowser("https://example.org/secret", m_log);
    EXPECT_THAT(m_log.lines, ElementsAre(HasSubstr("Failed to start xdg-open")));
    EXPECT_THAT(m_log.lines, ElementsAre(Not(HasSubstr("secret"))));
}

} // namespace stillgate
