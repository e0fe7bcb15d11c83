#include "tests/integration/TLSServer.h"

#include <QProcess>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>
#include <QTcpSocket>
#include <gtest/gtest.h>

namespace stillgate::test
{

namespace
{

std::string shellIn(const std::filesystem::path& folder, const std::string& script)
{
    QProcess process;
    process.setWorkingDirectory(QString::fromStdString(folder));
    process.start("/bin/bash", {"-ec", QString::fromStdString(script)});
    process.waitForFinished(-1);
    EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
    return process.readAllStandardOutput().toStdString();
}

} // namespace

Certificates::Certificates()
{
    shellIn(m_folder.path(), R"(
        authority() {
            openssl ecparam -name prime256v1 -genkey -noout -out "$1.key"
            openssl req -x509 -new -key "$1.key" -subj "/CN=$1" -days 2 -out "$1.pem"
        }
        issue() { # name, authority, extensions; the key is there
            openssl req -new -key "$1.key" -subj "/CN=$1" -out "$1.csr"
            openssl x509 -req -in "$1.csr" -CA "$2.pem" -CAkey "$2.key" -CAcreateserial -days 2 -out "$1.pem" \
                -extfile <(printf '%b' "$3")
        }
        local='subjectAltName=DNS:localhost,IP:127.0.0.1\n'
        authority root
        authority other-root
        openssl ecparam -name prime256v1 -genkey -noout -out intermediate.key
        issue intermediate root 'basicConstraints=critical,CA:true\n'
        openssl ecparam -name prime256v1 -genkey -noout -out ec.key
        openssl ecparam -name secp384r1 -genkey -noout -out p384.key
        openssl genrsa -out rsa.key 2048
        openssl genpkey -algorithm ed25519 -out ed25519.key
        issue ed25519 root 'basicConstraints=critical,CA:true\n'
        openssl ecparam -name prime256v1 -genkey -noout -out of-ed25519.key
        issue of-ed25519 ed25519 "$local"
        openssl ecparam -name prime256v1 -genkey -noout -out other-name.key
        openssl ecparam -name prime256v1 -genkey -noout -out stranger.key
        for name in ec p384 rsa; do issue $name intermediate "$local"; done
        issue other-name intermediate 'subjectAltName=DNS:elsewhere.test\n'
        issue stranger other-root "$local"
    )");
}

std::string Certificates::chain(const std::vector<std::string>& names) const
{
    std::string all;
    for (const auto& name : names)
        all += pem(name);
    return all;
}

std::string Certificates::pin(const std::string& name) const
{
    auto pin = shellIn(m_folder.path(),
        "openssl x509 -in " + name +
            ".pem -noout -pubkey | openssl pkey -pubin -outform DER"
            " | openssl dgst -sha256 -binary | openssl base64");
    pin.pop_back(); // the line feed
    return pin;
}

TLSServer::TLSServer(const std::string& chainPEM, const std::string& keyPEM)
{
    auto tls = QSslConfiguration::defaultConfiguration();
    tls.setLocalCertificateChain(QSslCertificate::fromData(QByteArray::fromStdString(chainPEM)));
    const auto algorithm = tls.localCertificate().publicKey().algorithm();
    tls.setPrivateKey(QSslKey{QByteArray::fromStdString(keyPEM), algorithm});
    m_server.setSslConfiguration(tls);
    QObject::connect(&m_server, &QTcpServer::pendingConnectionAvailable, &m_server, [this] {
        while (auto* connection = m_server.nextPendingConnection())
            serve(connection);
    });
    EXPECT_TRUE(m_server.listen(QHostAddress::LocalHost));
}

std::string TLSServer::url(const std::string& host) const
{
    return "https://" + host + ":" + std::to_string(m_server.serverPort()) + "/v1/thing";
}

void TLSServer::serve(QTcpSocket* connection)
{
    const auto index = received.size();
    received.emplace_back();
    const auto read = [this, connection, index] {
        auto& bytes = received[index];
        bytes += connection->readAll();
        const auto head = bytes.indexOf("\r\n\r\n");
        const auto lengthAt = bytes.indexOf("Content-Length: ");
        const auto length = lengthAt < 0 ? 0 : bytes.mid(lengthAt + 16).split('\r').front().toInt();
        if (head < 0 || bytes.size() < head + 4 + length)
            return;
        connection->write(answer.data(), static_cast<qint64>(answer.size()));
        if (closesAfterwards)
            connection->disconnectFromHost();
    };
    QObject::connect(connection, &QTcpSocket::readyRead, connection, read);
    read();
}

} // namespace stillgate::test
