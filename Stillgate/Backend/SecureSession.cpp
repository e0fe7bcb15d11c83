#include "Backend/SecureSession.h"

#include "Platform/OneShotEvent.h"

#include <QIODevice>
#include <QNetworkAccessManager>
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
constexpr qint64 largestAnswer = 64 << 20;

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
    result.setRawHeader("Connection", "close");         // a kept connection may close under the next request
    result.setRawHeader("Accept-Encoding", "identity"); // Qt would unpack, and call a broken archive a success
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

/// Errors below 200 are the connection's; from there on, an HTTP status of 400 or more counts as one too.
bool hasNetworkError(const QNetworkReply& reply, int status)
{
    constexpr int firstContentError = QNetworkReply::ContentAccessDenied;
    const bool isOnlyTheStatus = status >= 400 && reply.error() >= firstContentError;
    return reply.error() != QNetworkReply::NoError && !isOnlyTheStatus;
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

/// A request on its way, with a manager of its own. Requests of one manager queue for six connections, and one that
/// meets a connection at its end is moved to another, which a body that can be read once doesn't survive.
class Exchange
{
public:
    explicit Exchange(const HTTPRequest& request)
        : m_reply(start(*m_manager, request))
    {}

    /// The coroutine ends within the reply's own signal: the sender has to outlive that.
    ~Exchange() { m_manager->deleteLater(); }

    Exchange(const Exchange&) = delete;
    Exchange& operator=(const Exchange&) = delete;

    [[nodiscard]] QNetworkReply* reply() const { return m_reply; }

private:
    QNetworkAccessManager* m_manager = new QNetworkAccessManager;
    QNetworkReply* m_reply; ///< the manager's
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
    const Exchange exchange{request};
    auto* const reply = exchange.reply();

    OneShotEvent ended;
    auto verdict = Verdict::untrusted;
    bool isTooLarge = false;
    const QObject listener; // without it, nothing calls into what is above
    QObject::connect(reply, &QNetworkReply::sslErrors, &listener, [&, reply] {
        verdict = judge(*reply);
        if (verdict == Verdict::accepted)
            reply->ignoreSslErrors();
    });
    QObject::connect(reply, &QNetworkReply::downloadProgress, &listener, [&, reply](qint64 got) {
        isTooLarge = got > largestAnswer;
        if (isTooLarge)
            reply->abort();
    });
    QObject::connect(reply, &QNetworkReply::finished, &listener, [&ended] { ended.happen(); });
    const auto onCancel = token.onCancel([reply] { reply->abort(); });
    const auto tooLate = m_scheduler.once(longestExchange, [reply] { reply->abort(); });
    if (!reply->isFinished())
        co_await ended;

    if (verdict == Verdict::unpinned)
        m_notifications.post(sgCertificatePinningFailed);
    if (isTooLarge)
        co_return failure(APIError::transport("The answer is too large"));
    const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (verdict != Verdict::accepted || status == 0 || hasNetworkError(*reply, status))
        co_return failure(APIError::transport(reply->errorString().toStdString()));
    co_return responseOf(*reply, status);
}

SecureSession::Verdict SecureSession::judge(const QNetworkReply& reply)
{
    const auto chain = m_trust.evaluate(sentCertificates(reply), reply.url().host().toStdString());
    if (!chain) {
        m_log.write("[Stillgate] TLS trust evaluation failed: " + chain.error());
        return Verdict::untrusted;
    }
    if (!carriesAPin(*chain)) {
        m_log.write("[Stillgate] Certificate pin mismatch. Rejecting connection.");
        return Verdict::unpinned;
    }
    return Verdict::accepted;
}

/// A pin on any key of the chain holds, an authority's too.
bool SecureSession::carriesAPin(const std::vector<PublicKey>& chain) const
{
    return std::ranges::any_of(chain, [this](const auto& key) {
        const auto hash = PublicKeyPin::spkiHash(key);
        return hash && m_settings.pinnedHashes.contains(*hash);
    });
}

} // namespace stillgate
