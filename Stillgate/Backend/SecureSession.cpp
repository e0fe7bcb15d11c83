#include "Backend/SecureSession.h"

#include "Platform/OneShotEvent.h"

#include <QIODevice>
#include <QNetworkReply>
#include <QSslCertificate>
#include <QSslConfiguration>

#include <algorithm>

namespace stillgate
{

using namespace std::chrono_literals;

namespace
{

constexpr auto longestSilence = 30s;
constexpr auto longestExchange = 60s;

/// A body that can be read once. QNetworkAccessManager repeats a request whose connection closes without an answer,
/// also one that changes something on the server; it can't repeat what it can't read again.
class OnceReadableBody final : public QIODevice
{
public:
    explicit OnceReadableBody(QByteArray bytes)
        : m_rest(std::move(bytes))
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }

    [[nodiscard]] bool isSequential() const override { return true; }

    bool seek(qint64) override { return false; }

    [[nodiscard]] qint64 bytesAvailable() const override { return m_rest.size() + QIODevice::bytesAvailable(); }

protected:
    qint64 readData(char* data, qint64 most) override
    {
        const auto count = std::min<qint64>(most, m_rest.size());
        std::copy_n(m_rest.constData(), count, data);
        m_rest.remove(0, count);
        return count == 0 ? -1 : count;
    }

    qint64 writeData(const char*, qint64) override { return -1; }

private:
    QByteArray m_rest;
};

QByteArray qtBytes(const std::string& bytes)
{
    return QByteArray::fromStdString(bytes);
}

QNetworkRequest qtRequest(const HTTPRequest& request)
{
    QNetworkRequest result{QUrl::fromEncoded(qtBytes(request.url), QUrl::StrictMode)};
    result.setRawHeader("Accept", "application/json");
    for (const auto& [name, value] : request.headers)
        result.setRawHeader(qtBytes(name), qtBytes(value));
    result.setRawHeader("Connection", "close"); // a kept connection may close under the next request
    result.setHeader(QNetworkRequest::UserAgentHeader, "Stillgate");
    result.setAttribute(QNetworkRequest::DoNotBufferUploadDataAttribute, true);
    result.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    result.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    result.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    result.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    result.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    result.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    result.setTransferTimeout(static_cast<int>(std::chrono::milliseconds{longestSilence}.count()));

    // Qt trusts nobody, so that it asks about every server (the sslErrors signal) and drops the connection on a no
    // before it writes. Refusing in the `encrypted` signal comes too late: it aborts a thread that writes meanwhile.
    auto tls = QSslConfiguration::defaultConfiguration();
    tls.setPeerVerifyMode(QSslSocket::VerifyPeer);
    tls.setCaCertificates({});
    tls.setProtocol(QSsl::TlsV1_2OrLater);
    tls.setSslOption(QSsl::SslOptionDisableSessionPersistence, true);
    tls.setSslOption(QSsl::SslOptionDisableSessionTickets, true);
    result.setSslConfiguration(tls);
    return result;
}

QNetworkReply* start(QNetworkAccessManager& network, const HTTPRequest& request)
{
    auto qt = qtRequest(request);
    if (request.method == "GET")
        return network.get(qt);
    const auto bytes = qtBytes(request.body.value_or(""));
    qt.setHeader(QNetworkRequest::ContentLengthHeader, bytes.size());
    auto body = std::make_unique<OnceReadableBody>(bytes);
    auto* const reply = network.sendCustomRequest(qt, qtBytes(request.method), body.get());
    body.release()->setParent(reply);
    return reply;
}

/// Errors below 200 are the connection's; an HTTP status that is no success counts as one above.
bool hasNetworkError(const QNetworkReply& reply)
{
    constexpr int firstContentError = QNetworkReply::ContentAccessDenied;
    return reply.error() != QNetworkReply::NoError && reply.error() < firstContentError;
}

std::vector<std::string> sentCertificates(const QNetworkReply& reply)
{
    std::vector<std::string> certificates;
    for (const auto& certificate : reply.sslConfiguration().peerCertificateChain())
        certificates.push_back(certificate.toDer().toStdString());
    return certificates;
}

HTTPResponse responseOf(QNetworkReply& reply, int status)
{
    HTTPResponse response{.status = status, .body = reply.readAll().toStdString()};
    if (reply.hasRawHeader("Content-Type"))
        response.contentType = reply.rawHeader("Content-Type").toStdString();
    return response;
}

/// The coroutine ends within the reply's own signal: the sender has to outlive that.
struct DisconnectAndDeleteLater
{
    void operator()(QNetworkReply* reply) const
    {
        reply->disconnect();
        reply->abort();
        reply->deleteLater();
    }
};

} // namespace

SecureSession::SecureSession(Settings settings, NotificationCenter& notifications, Scheduler& scheduler, Log& log)
    : m_settings(std::move(settings))
    , m_trust(m_settings.extraAnchor)
    , m_notifications(notifications)
    , m_scheduler(scheduler)
    , m_log(log)
{}

Task<Result<HTTPResponse>> SecureSession::send(HTTPRequest request, CancellationToken token)
{
    if (token.isCancelled())
        co_return failure(APIError::transport("Operation canceled"));
    const std::unique_ptr<QNetworkReply, DisconnectAndDeleteLater> reply{start(m_network, request)};

    OneShotEvent ended;
    bool isAccepted = false;
    QObject::connect(reply.get(), &QNetworkReply::sslErrors, reply.get(), [&, sender = reply.get()] {
        isAccepted = accepts(*sender);
        if (isAccepted)
            sender->ignoreSslErrors();
    });
    QObject::connect(reply.get(), &QNetworkReply::finished, reply.get(), [&ended] { ended.happen(); });
    const auto onCancel = token.onCancel([sender = reply.get()] { sender->abort(); });
    const auto tooLate = m_scheduler.once(longestExchange, [sender = reply.get()] { sender->abort(); });
    if (!reply->isFinished())
        co_await ended;

    const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (!isAccepted || status == 0 || hasNetworkError(*reply))
        co_return failure(APIError::transport(reply->errorString().toStdString()));
    co_return responseOf(*reply, status);
}

bool SecureSession::accepts(QNetworkReply& reply)
{
    const auto chain = m_trust.evaluate(sentCertificates(reply), reply.url().host().toStdString());
    if (!chain) {
        m_log.write("[Stillgate] TLS trust evaluation failed: " + chain.error());
        return false;
    }
    if (!carriesAPin(*chain)) {
        refusePin();
        return false;
    }
    return true;
}

/// A pin on any key of the chain holds, an authority's too.
bool SecureSession::carriesAPin(const std::vector<PublicKey>& chain) const
{
    return std::ranges::any_of(chain, [this](const auto& key) {
        const auto hash = PublicKeyPin::spkiHash(key);
        return hash && m_settings.pinnedHashes.contains(*hash);
    });
}

void SecureSession::refusePin()
{
    m_log.write("[Stillgate] Certificate pin mismatch. Rejecting connection.");
    m_pinFailurePost = m_scheduler.once(0ms, [this] { m_notifications.post(sgCertificatePinningFailed); });
}

} // namespace stillgate
