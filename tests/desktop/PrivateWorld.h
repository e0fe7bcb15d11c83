#pragma once

#include "tests/support/TemporaryFolder.h"
#include "tests/support/Waiting.h"

#include <QProcess>
#include <gtest/gtest.h>

#include <string>

namespace stillgate::test
{

/// A test that changes /etc and mounts things, in the world of scripts/private-world. It refuses to run anywhere
/// else.
class PrivateWorldTest : public testing::Test
{
protected:
    void SetUp() override;
};

/// The program `stillgate --headless`, with a home folder of its own.
class HeadlessEngine
{
public:
    HeadlessEngine();

    /// A home in which setup is complete and a session is stored.
    void putSession();

    void putState(const std::string& json) const { putFile(stateFile(), json); }

    [[nodiscard]] std::filesystem::path home() const { return m_home.path(); }

    [[nodiscard]] std::filesystem::path stateFile() const;
    [[nodiscard]] std::string blockedConfig() const;

    /// As this user, or as another one ("nobody").
    void start(const std::string& asUser = {});

    /// Sends SIGTERM; the exit status, or -1 if the program doesn't end as it should.
    int stop();

    /// Starts it, waits until it has done what it does at a start, and stops it. What it wrote to its log.
    std::string runOnce(const std::string& asUser = {});

    /// Waits until the log holds a text.
    bool logs(const std::string& text);

    [[nodiscard]] std::string log() const { return fileBytes(m_log); }

    std::string baseURL = "https://127.0.0.1:1/v1"; ///< where nobody listens, unless a test says otherwise

    [[nodiscard]] qint64 pid() const { return m_process.processId(); }

private:
    TemporaryFolder m_home;
    std::filesystem::path m_log = m_home.path() / "log";
    QProcess m_process;
};

} // namespace stillgate::test
