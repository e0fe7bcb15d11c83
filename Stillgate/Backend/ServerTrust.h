#pragma once

#include "Backend/PublicKeyPin.h"

#include <expected>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace stillgate
{

/// Decides whether a server's certificates lead to an authority that this machine trusts.
///
/// THREAT: the list that a server sends is no proof of anything. Whoever holds any valid certificate can append a
/// stranger's to it, one with a pinned key included. So libcrypto builds and verifies the chain (RFC 5280, and
/// RFC 6125 for the name), and what it gives back is that chain alone.
class ServerTrust
{
public:
    /// The machine's trust store, and one authority more for a server that a family hosts itself (PEM).
    explicit ServerTrust(std::optional<std::string> extraAnchor);
    ~ServerTrust();

    ServerTrust(const ServerTrust&) = delete;
    ServerTrust& operator=(const ServerTrust&) = delete;

    /// The public keys of the verified chain, the server's own first; or why there is none.
    /// `sentCertificates` are DER, the server's own first; `host` is a name or an IP address.
    [[nodiscard]] std::expected<std::vector<PublicKey>, std::string> evaluate(
        const std::vector<std::string>& sentCertificates, const std::string& host) const;

private:
    struct Store;

    [[nodiscard]] const Store& store() const;

    std::optional<std::string> m_extraAnchor;

    /// Read when the first server shows its certificates. The machine's own authorities take 25 ms, which neither the
    /// stored rules nor the first window have to wait for.
    mutable std::unique_ptr<Store> m_store;
};

} // namespace stillgate
