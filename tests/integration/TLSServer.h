#pragma once

#include "tests/support/TemporaryFolder.h"

#include <QByteArray>
#include <QSslServer>

#include <functional>
#include <string>
#include <vector>

namespace stillgate::test
{

/// Keys and certificates, made by openssl(1): two authorities, two intermediates of the first, servers of all.
class Certificates
{
public:
    Certificates();

    /// Concatenated PEM, a server's own certificate first. For localhost: "ec", "p384" and "rsa" of "intermediate",
    /// "of-ed25519" of "ed25519", "stranger" of "other-root"; for another host: "other-name" of "intermediate".
    [[nodiscard]] std::string chain(const std::vector<std::string>& names) const;

    [[nodiscard]] std::string pem(const std::string& name) const { return fileBytes(file(name + ".pem")); }

    [[nodiscard]] std::string key(const std::string& name) const { return fileBytes(file(name + ".key")); }

    /// The pin as outside tools compute it over the certificate.
    [[nodiscard]] std::string pin(const std::string& name) const;

private:
    [[nodiscard]] std::filesystem::path file(const std::string& name) const { return m_folder.path() / name; }

    TemporaryFolder m_folder;
};

/// An HTTPS server on loopback that answers every request the same way and keeps what it got.
class TLSServer
{
public:
    TLSServer(const std::string& chainPEM, const std::string& keyPEM);

    [[nodiscard]] std::string url(const std::string& host = "localhost") const;

    std::string answer = "HTTP/1.1 200 OK\r\nContent-Type: application/json\r\nContent-Length: 2\r\n\r\n{}";
    bool closesAfterwards = true;
    std::vector<QByteArray> received; ///< bytes by connection that came to a handshake

private:
    void serve(QTcpSocket* connection);

    QSslServer m_server;
};

} // namespace stillgate::test
