#pragma once

#include "tests/support/TemporaryFolder.h"

#include <QProcess>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace stillgate::test
{

/// A device that is signed in, the only one of its account.
struct SignedInDevice
{
    std::string userId;
    std::string deviceId;
    std::string token;
};

/// A stillgate-server of its own: a deployment in a temporary folder, served on free ports of loopback. It is killed
/// and its folder deleted at the end of this object.
///
/// Every step throws std::runtime_error with what the program has said, if the program doesn't do it in time.
class ServerProcess
{
public:
    /// Makes the deployment and starts the server. `database` is the location of another database than the
    /// deployment's own SQLite file.
    explicit ServerProcess(std::string database = {});
    ~ServerProcess();

    ServerProcess(const ServerProcess&) = delete;
    ServerProcess& operator=(const ServerProcess&) = delete;

    [[nodiscard]] std::filesystem::path folder() const { return m_folder.path() / "deployment"; }

    /// Path or URL, as server::Database takes it.
    [[nodiscard]] const std::string& database() const { return m_database; }

    [[nodiscard]] std::uint16_t port() const { return m_port; }

    [[nodiscard]] std::uint16_t sitePort() const { return m_sitePort; }

    /// "https://127.0.0.1:…/v1"
    [[nodiscard]] std::string baseURL() const;

    /// PEM of the certificate that its own is signed by.
    [[nodiscard]] std::string authority() const { return fileBytes(folder() / "authority.pem"); }

    /// What the server has written to standard error.
    [[nodiscard]] std::string log() const { return fileBytes(m_folder.path() / "server.log"); }

    /// Puts accounts with one device each straight into the database, whether the server runs or not: the way through
    /// the web site hashes passwords, which takes long.
    [[nodiscard]] std::vector<SignedInDevice> addDevices(int count);

    /// SIGKILL: the server ends as in a power cut, but for what the kernel hasn't written to the disk yet.
    void kill();

    /// SIGTERM, without waiting for its effect.
    void terminate();

    /// The exit status, or nothing if it was a signal that ended the server.
    [[nodiscard]] std::optional<int> waitForEnd();

    enum class Ports { fresh, same };

    /// Once more on the same folder, after kill() or waitForEnd(). With the same ports somebody else may have taken
    /// them in between, as the kernel does for connections of the test's own.
    void restart(Ports ports = Ports::fresh);

private:
    void start(std::uint16_t port, std::uint16_t sitePort);
    [[nodiscard]] std::uint16_t printedPort(const QByteArray& introduction);
    [[noreturn]] void fail(const std::string& what);

    TemporaryFolder m_folder;
    std::string m_database;
    QProcess m_process;
    std::uint16_t m_port = 0;
    std::uint16_t m_sitePort = 0;
    int m_accounts = 0;
};

} // namespace stillgate::test
