#include "tests/integration/TLSServer.h"

#include <QProcess>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>
#include <QTcpSocket>
#include <gtest/gtest.h>

#include <algorithm>
#include <sys/socket.h>

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

Certificates& Certificates::shared()
{
    static Certificates certificates;
    return certificates;
}

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
        openssl ecparam -name prime256v1 -genkey -noout -out alone.key
        openssl req -x509 -new -key alone.key -subj "/CN=alone" -addext "${local%%\\n}" -days 2 -out alone.pem
    )");
}

void Certificates::issue(const std::string& name, const std::string& keyCommand, int days)
{
    shellIn(m_folder.path(),
        "name=" + name + "; days=" + std::to_string(days) + "\n[ -f $name.key ] || " + keyCommand + R"( >$name.key
        openssl req -new -key $name.key -subj /CN=$name -out $name.csr
        openssl x509 -req -in $name.csr -CA intermediate.pem -CAkey intermediate.key -CAcreateserial -days $days \
            -out $name.pem -extfile <(echo subjectAltName=DNS:localhost,IP:127.0.0.1)
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

std::string httpAnswer(int status, const std::string& body, const std::string& contentType)
{
    return "HTTP/1.1 " + std::to_string(status) + " Words\r\nContent-Type: " + contentType +
        "\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
}

std::string TLSServer::baseURL(const std::string& host) const
{
    return "https://" + host + ":" + std::to_string(m_server.serverPort()) + "/v1";
}

std::ptrdiff_t TLSServer::count(const std::string& request) const
{
    const auto firstLine = QByteArray::fromStdString(request + " HTTP/1.1\r\n");
    return std::ranges::count_if(received, [&](const auto& bytes) { return bytes.startsWith(firstLine); });
}

void TLSServer::answerHeldWith(const std::string& bytes)
{
    for (const auto& connection : std::exchange(held, {})) {
        if (connection)
            write(connection, bytes);
    }
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
        if (const auto reply = respond ? respond(bytes) : answer)
            write(connection, *reply);
        else
            held.emplace_back(connection);
    };
    QObject::connect(connection, &QTcpSocket::readyRead, connection, read);
    read();
}

void TLSServer::write(QTcpSocket* connection, const std::string& bytes) const
{
    connection->write(bytes.data(), static_cast<qint64>(bytes.size()));
    if (then == Then::close)
        connection->disconnectFromHost();
    if (then != Then::reset)
        return;
    connection->flush();
    const linger none{.l_onoff = 1, .l_linger = 0}; // the kernel then resets, see socket(7)
    ::setsockopt(static_cast<int>(connection->socketDescriptor()), SOL_SOCKET, SO_LINGER, &none, sizeof none);
    connection->abort();
}

} // namespace stillgate::test
