#include "Platform/WebAddress.h"

#include <QUrl>

namespace stillgate
{

std::optional<std::string> webAddress(const std::string& text)
{
    const QUrl url{QString::fromStdString(text), QUrl::StrictMode};
    const bool isOfTheWeb = url.scheme() == "http" || url.scheme() == "https";
    if (!url.isValid() || !isOfTheWeb || url.host().isEmpty())
        return std::nullopt;
    return url.toEncoded().toStdString();
}

std::string addressOfPage(const std::string& address)
{
    constexpr std::string_view readerView = "about:reader?url=";
    if (address.starts_with(readerView))
        return QUrl::fromPercentEncoding(QByteArray::fromStdString(address.substr(readerView.size()))).toStdString();
    for (const std::string_view wrapping : {"view-source:", "blob:"}) {
        if (address.starts_with(wrapping))
            return address.substr(wrapping.size());
    }
    return address;
}

std::optional<std::string> hostOfAddress(const std::string& text)
{
    const QUrl url{QString::fromStdString(text).trimmed()};
    auto host = url.host(QUrl::FullyEncoded).toLower().toStdString();
    if (host.ends_with('.'))
        host.pop_back();
    return host.empty() ? std::nullopt : std::optional{std::move(host)};
}

} // namespace stillgate
