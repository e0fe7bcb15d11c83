#include "Accounts/Secrets.h"

#include <QUuid>

#include <array>
#include <new>
#include <sodium.h>
#include <vector>

namespace stillgate::server
{

namespace
{

constexpr std::string_view codeAlphabet = "ABCDEFGHJKMNPQRSTUVWXYZ23456789";
constexpr std::size_t digestBytes = 32;
using Digest = std::array<unsigned char, digestBytes>;

const unsigned char* bytesOf(std::string_view text)
{
    return reinterpret_cast<const unsigned char*>(text.data());
}

std::string base64url(const Digest& bytes)
{
    constexpr auto variant = sodium_base64_VARIANT_URLSAFE_NO_PADDING;
    std::string text(sodium_base64_ENCODED_LEN(digestBytes, variant), '\0');
    sodium_bin2base64(text.data(), text.size(), bytes.data(), bytes.size(), variant);
    text.pop_back(); // the terminating NUL
    return text;
}

Digest hash(std::string_view text, std::string_view key)
{
    Digest digest{};
    crypto_generichash(digest.data(), digest.size(), bytesOf(text), text.size(), bytesOf(key), key.size());
    return digest;
}

} // namespace

std::string randomToken()
{
    Digest bytes{};
    randombytes_buf(bytes.data(), bytes.size());
    return base64url(bytes);
}

std::string digestOf(std::string_view secret)
{
    return base64url(hash(secret, {}));
}

std::string derivedToken(std::string_view token, std::string_view salt, std::string_view purpose)
{
    // Of any length; the key of the hash may have 64 bytes.
    const auto key = hash(token, {});
    const std::string_view keyBytes{reinterpret_cast<const char*>(key.data()), key.size()};
    return base64url(hash(std::string{purpose} + ':' + std::string{salt}, keyBytes));
}

bool isSameSecret(std::string_view left, std::string_view right)
{
    return left.size() == right.size() && sodium_memcmp(left.data(), right.data(), left.size()) == 0;
}

std::string randomCode(int length)
{
    std::string code;
    for (int position = 0; position < length; ++position)
        code += codeAlphabet[randombytes_uniform(static_cast<std::uint32_t>(codeAlphabet.size()))];
    return code;
}

std::string typedCode(std::string_view text)
{
    std::string code;
    for (const char letter : text) {
        const bool isSmall = letter >= 'a' && letter <= 'z';
        const char capital = isSmall ? static_cast<char>(letter - 'a' + 'A') : letter;
        if (capital != '-' && capital != ' ' && capital != '\t')
            code += capital;
    }
    return code;
}

std::string newId()
{
    return QUuid::createUuid().toString(QUuid::WithoutBraces).toStdString();
}

PasswordCost ordinaryPasswordCost()
{
    return {.operations = crypto_pwhash_OPSLIMIT_INTERACTIVE, .bytes = crypto_pwhash_MEMLIMIT_INTERACTIVE};
}

std::string passwordHash(const std::string& password, PasswordCost cost)
{
    std::array<char, crypto_pwhash_STRBYTES> hash{};
    const int failed = crypto_pwhash_str_alg(
        hash.data(), password.data(), password.size(), cost.operations, cost.bytes, crypto_pwhash_ALG_ARGON2ID13);
    if (failed != 0)
        throw std::bad_alloc{};
    return hash.data();
}

bool isPassword(const std::string& password, const std::string& hash)
{
    return crypto_pwhash_str_verify(hash.c_str(), password.data(), password.size()) == 0;
}

} // namespace stillgate::server
