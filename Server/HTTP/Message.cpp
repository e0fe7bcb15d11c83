#include "HTTP/Message.h"

#include "Platform/Text.h"

#include <QByteArray>
#include <QHostAddress>
#include <QStringDecoder>

#include <algorithm>

namespace stillgate::server
{

namespace
{

char lowerCase(char letter)
{
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

/// Calls `visit` with each piece between the separators.
template <class Visit>
void forEachPiece(std::string_view text, char separator, Visit visit)
{
    while (!text.empty()) {
        const auto end = std::min(text.find(separator), text.size());
        visit(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
}

std::string formDecoded(std::string_view encoded)
{
    std::string withBlanks{encoded};
    std::ranges::replace(withBlanks, '+', ' ');
    return percentDecoded(withBlanks);
}

} // namespace

bool CaseInsensitiveLess::operator()(std::string_view left, std::string_view right) const
{
    return std::ranges::lexicographical_compare(left, right, {}, lowerCase, lowerCase);
}

const std::string& Request::header(std::string_view name) const
{
    static const std::string none;
    const auto found = headers.find(name);
    return found == headers.end() ? none : found->second;
}

std::string networkOf(const std::string& address)
{
    const QHostAddress host{QString::fromStdString(address)};
    bool isIPv4 = false; // or is mapped to IPv6
    const auto bits = host.toIPv4Address(&isIPv4);
    if (isIPv4)
        return QHostAddress{bits}.toString().toStdString();
    auto network = host.toIPv6Address();
    std::fill(std::begin(network.c) + 8, std::end(network.c), quint8{0});
    return QHostAddress{network}.toString().toStdString();
}

std::string percentDecoded(std::string_view encoded)
{
    const auto bytes = QByteArray::fromPercentEncoding(
        QByteArray::fromRawData(encoded.data(), static_cast<qsizetype>(encoded.size())));
    QStringDecoder decoder{QStringDecoder::Utf8};
    const QString text = decoder(bytes);
    if (decoder.hasError() || text.contains(QChar::Null))
        throw Refusal{400, "The address or form holds a text that isn't UTF-8"};
    return bytes.toStdString();
}

std::map<std::string, std::string> formValues(std::string_view encoded)
{
    std::map<std::string, std::string> values;
    forEachPiece(encoded, '&', [&](std::string_view pair) {
        const auto equals = std::min(pair.find('='), pair.size());
        const auto value = pair.substr(std::min(equals + 1, pair.size()));
        values[formDecoded(pair.substr(0, equals))] = formDecoded(value);
    });
    return values;
}

std::string cookie(const Request& request, std::string_view name)
{
    std::string value;
    forEachPiece(request.header("Cookie"), ';', [&](std::string_view pair) {
        const auto equals = std::min(pair.find('='), pair.size());
        if (trimmed(pair.substr(0, equals)) == name)
            value = trimmed(pair.substr(std::min(equals + 1, pair.size())));
    });
    return value;
}

} // namespace stillgate::server
