#pragma once

#include <string>
#include <string_view>

namespace stillgate::server
{

// Everything random or secret comes from libsodium, which main() initializes.

/// 256 random bits, in 43 characters that fit a header and an address (base64url, RFC 4648).
[[nodiscard]] std::string randomToken();

/// What the database keeps of a token: enough to know it again, and of no use to a thief (BLAKE2b, RFC 7693).
[[nodiscard]] std::string digestOf(std::string_view secret);

/// The token that follows from another one, a salt and a purpose. Nobody can work it out without the other token.
[[nodiscard]] std::string derivedToken(std::string_view token, std::string_view salt, std::string_view purpose);

/// Compares in a time that doesn't depend on where the texts differ.
[[nodiscard]] bool isSameSecret(std::string_view left, std::string_view right);

/// A code for people to read and type: capital letters and digits without those that look alike, 31 in all.
[[nodiscard]] std::string randomCode(int length);

/// A code as it was made, from what somebody typed: blanks and dashes gone, letters in upper case.
[[nodiscard]] std::string typedCode(std::string_view text);

/// A random UUID (RFC 9562, version 4), in lower case.
[[nodiscard]] std::string newId();

/// How much work a password costs to hash, and so to guess.
struct PasswordCost
{
    unsigned long long operations; ///< passes over the memory
    std::size_t bytes;
};

[[nodiscard]] PasswordCost ordinaryPasswordCost();

/// Argon2id (RFC 9106) with its parameters and a random salt, as one text.
[[nodiscard]] std::string passwordHash(const std::string& password, PasswordCost cost);

[[nodiscard]] bool isPassword(const std::string& password, const std::string& hash);

} // namespace stillgate::server
