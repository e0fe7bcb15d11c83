#pragma once

#include "Models/Date.h"

#include <memory>
#include <openssl/types.h>
#include <string>
#include <vector>

namespace stillgate::server
{

/// A private key on P-256, as a server keeps it.
class ServerKey
{
public:
    [[nodiscard]] static ServerKey generate();

    /// Throws std::runtime_error if the text holds none.
    [[nodiscard]] static ServerKey fromPEM(const std::string& pem);

    [[nodiscard]] std::string pem() const;

    /// The Base64 text of the SHA-256 digest of the SubjectPublicKeyInfo (RFC 5280): what an application pins.
    [[nodiscard]] std::string pin() const;

    [[nodiscard]] EVP_PKEY* get() const { return m_key.get(); }

private:
    explicit ServerKey(EVP_PKEY* key);

    std::shared_ptr<EVP_PKEY> m_key;
};

/// An authority of one's own: its certificate, for ten years.
[[nodiscard]] std::string authorityCertificate(const ServerKey& key, const std::string& name);

/// A server's certificate by that authority, for these host names and IP addresses, for 397 days.
[[nodiscard]] std::string serverCertificate(const ServerKey& key, const std::vector<std::string>& hosts,
    const std::string& authorityPEM, const ServerKey& authorityKey);

/// The host names and addresses that a certificate is for.
[[nodiscard]] std::vector<std::string> hostsOf(const std::string& certificatePEM);

/// How long a certificate is still valid; negative if it isn't any more. Throws std::runtime_error if it is none.
[[nodiscard]] std::chrono::days daysLeft(const std::string& certificatePEM, Date now);

} // namespace stillgate::server
