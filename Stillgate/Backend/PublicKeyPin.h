#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace stillgate
{

/// A public key as a certificate holds it.
struct PublicKey
{
    enum class Type { rsa, ec, other };

    Type type = Type::other;
    /// The raw external form: for RSA the RSAPublicKey structure of PKCS #1 (RFC 8017), for EC the uncompressed point
    /// (SEC 1). Empty if the key has none.
    std::string externalForm;
    std::optional<int> sizeInBits;
};

/// The pin of a public key: the Base64 text of the SHA-256 digest of its SubjectPublicKeyInfo (RFC 5280), as any
/// outside tool computes it over the certificate. A renewed certificate with the same key keeps its pin.
namespace PublicKeyPin
{

/// Nothing for a key that is neither RSA nor EC on P-256, P-384 or P-521, or that has no external form. An EC key of
/// unknown size counts as P-256.
[[nodiscard]] std::optional<std::string> spkiHash(const PublicKey& key);

/// The Base64 text of the SHA-256 digest, 44 characters.
[[nodiscard]] std::string hash(std::string_view bytes);

/// The length bytes of DER (X.690, 8.1.3).
[[nodiscard]] std::string derLengthBytes(std::size_t length);

} // namespace PublicKeyPin

} // namespace stillgate
