#include "Backend/PublicKeyPin.h"

#include <QCryptographicHash>

namespace stillgate::PublicKeyPin
{

namespace
{

using namespace std::string_view_literals;

// The DER algorithm identifiers of RFC 5280, as RFC 3279 and RFC 5480 name them.
constexpr auto rsaAlgorithmIdentifier = "\x30\x0D\x06\x09\x2A\x86\x48\x86\xF7\x0D\x01\x01\x01\x05\x00"sv;
constexpr auto ecP256AlgorithmIdentifier =
    "\x30\x13\x06\x07\x2A\x86\x48\xCE\x3D\x02\x01\x06\x08\x2A\x86\x48\xCE\x3D\x03\x01\x07"sv;
constexpr auto ecP384AlgorithmIdentifier = "\x30\x10\x06\x07\x2A\x86\x48\xCE\x3D\x02\x01\x06\x05\x2B\x81\x04\x00\x22"sv;
constexpr auto ecP521AlgorithmIdentifier = "\x30\x10\x06\x07\x2A\x86\x48\xCE\x3D\x02\x01\x06\x05\x2B\x81\x04\x00\x23"sv;

constexpr char sequenceTag = 0x30;
constexpr char bitStringTag = 0x03;
constexpr char noUnusedBits = 0x00;

std::optional<std::string_view> algorithmIdentifier(const PublicKey& key)
{
    if (key.type == PublicKey::Type::rsa)
        return rsaAlgorithmIdentifier;
    if (key.type != PublicKey::Type::ec)
        return std::nullopt;
    switch (key.sizeInBits.value_or(256)) {
    case 256:
        return ecP256AlgorithmIdentifier;
    case 384:
        return ecP384AlgorithmIdentifier;
    case 521:
        return ecP521AlgorithmIdentifier;
    default:
        return std::nullopt;
    }
}

} // namespace

std::optional<std::string> spkiHash(const PublicKey& key)
{
    const auto identifier = algorithmIdentifier(key);
    if (key.externalForm.empty() || !identifier)
        return std::nullopt;
    const auto bitString =
        std::string{bitStringTag} + derLengthBytes(key.externalForm.size() + 1) + noUnusedBits + key.externalForm;
    return hash(std::string{sequenceTag} + derLengthBytes(identifier->size() + bitString.size()) +
        std::string{*identifier} + bitString);
}

std::string hash(std::string_view bytes)
{
    const auto input = QByteArray::fromRawData(bytes.data(), static_cast<qsizetype>(bytes.size()));
    return QCryptographicHash::hash(input, QCryptographicHash::Sha256).toBase64().toStdString();
}

std::string derLengthBytes(std::size_t length)
{
    if (length < 0x80)
        return {static_cast<char>(length)};
    std::string bigEndian;
    for (auto rest = length; rest > 0; rest >>= 8)
        bigEndian.insert(bigEndian.begin(), static_cast<char>(rest & 0xff));
    return static_cast<char>(0x80 + bigEndian.size()) + bigEndian;
}

} // namespace stillgate::PublicKeyPin
