#pragma once

#include "tests/support/TemporaryFolder.h"

#include <QByteArray>
#include <QPointer>
#include <QSslServer>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace stillgate::test
{

/// Keys and certificates, made by openssl(1): two authorities, two intermediates of the first, servers of all.
class Certificates
{
public:
    /// The same ones for all tests of a program.
    static Certificates& shared();

    Certificates();

    /// One more server for localhost, of "intermediate". `keyCommand` prints its key, unless that is there already.
    void issue(const std::string& name, const std::string& keyCommand, int days = 2);

    /// Concatenated PEM, a server's own certificate first. For localhost: "ec", "p384" and "rsa" of "intermediate",
    /// "of-ed25519" of "ed25519", "stranger" of "other-root", "alone" of itself; for another host: "other-name" of
    /// "intermediate".
    [[nodiscard]] std::string chain(const std::vector<std::string>& names) const;

    [[nodiscard]] std::string pem(const std::string& name) const { return fileBytes(file(name + ".pem")); }

    [[nodiscard]] std::string key(const std::string& name) const { return fileBytes(file(name + ".key")); }

    /// The pin as outside tools compute it over the certificate.
    [[nodiscard]] std::string pin(const std::string& name) const;

private:
    [[nodiscard]] std::filesystem::path file(const std::string& name) const { return m_folder.path() / name; }

    TemporaryFolder m_folder;
};

std::string httpAnswer(int status, const std::string& body, const std::string& contentType = "application/json");

/// An HTTPS server on loopback that keeps what it got, and does with a connection what no good server would.
class TLSServer
{
public:
    TLSServer(const std::string& chainPEM, const std::string& keyPEM);

    [[nodiscard]] std::string baseURL(const std::string& host = "localhost") const;

    [[nodiscard]] std::string url(const std::string& host = "localhost") const { return baseURL(host) + "/thing"; }

    /// How many requests for a path came, a "GET /v1/thing".
    [[nodiscard]] std::ptrdiff_t count(const std::string& request) const;

    /// Answers those that wait.
    void answerHeldWith(const std::string& bytes);

    /// The bytes of the answer to a request; nothing lets it wait. Without this, `answer` is for all.
    std::function<std::optional<std::string>(const QByteArray& request)> respond;
    std::string answer = httpAnswer(200, "{}");
    enum class Then { close, reset, stay } then = Then::close;
    std::vector<QByteArray> received; ///< bytes by connection that came to a handshake
    std::vector<QPointer<QTcpSocket>> held;

private:
    void serve(QTcpSocket* connection);
    void write(QTcpSocket* connection, const std::string& bytes) const;

    QSslServer m_server;
};

} // namespace stillgate::test
