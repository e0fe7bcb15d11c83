#pragma once

#include "Backend/HTTPTransport.h"
#include "Backend/ServerTrust.h"
#include "Platform/Log.h"
#include "Platform/NotificationCenter.h"
#include "Platform/Scheduler.h"

#include <set>

class QNetworkReply;

namespace stillgate
{

/// The one HTTP session with the backend. It accepts a server if this machine trusts it and one key of the verified
/// chain carries a pin that was fixed when the program was built. Nothing of it goes to disk, and it takes no cookies.
///
/// THREAT: both decisions are made within the handshake, before the first byte of the request, so that no token
/// reaches a server that fails one of them. An untrusted server is refused, no more; a trusted one without a pin means
/// that somebody with an authority's help stands in between, and ends the session.
class SecureSession final : public HTTPTransport
{
public:
    struct Settings
    {
        std::set<std::string> pinnedHashes;     ///< as by PublicKeyPin::spkiHash
        std::optional<std::string> extraAnchor; ///< PEM, for a server of one's own
    };

    SecureSession(Settings settings, NotificationCenter& notifications, Scheduler& scheduler, Log& log);

    [[nodiscard]] Task<Result<HTTPResponse>> send(HTTPRequest request, CancellationToken token) override;

private:
    enum class Verdict { untrusted, unpinned, accepted };

    [[nodiscard]] Verdict judge(const QNetworkReply& reply);
    [[nodiscard]] bool carriesAPin(const std::vector<PublicKey>& chain) const;

    Settings m_settings;
    ServerTrust m_trust;
    NotificationCenter& m_notifications;
    Scheduler& m_scheduler;
    Log& m_log;
};

} // namespace stillgate
