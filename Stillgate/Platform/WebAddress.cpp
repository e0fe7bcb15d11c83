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

std::optional<std::string> hostOfAddress(const std::string& text)
{
    const QUrl url{QString::fromStdString(text).trimmed()};
    auto host = url.host(QUrl::FullyEncoded).toLower().toStdString();
    if (host.ends_with('.'))
        host.pop_back();
    return host.empty() ? std::nullopt : std::optional{std::move(host)};
}

} // namespace stillgate
