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

} // namespace stillgate
