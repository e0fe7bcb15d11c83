#include "Backend/RequestPath.h"

#include <QUrl>

namespace stillgate
{

namespace
{

std::string encoded(std::string_view text, const char* allowed)
{
    const auto decoded = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
    return QUrl::toPercentEncoding(decoded, allowed).toStdString();
}

} // namespace

std::string pathEncoded(std::string_view text)
{
    return encoded(text, "!$&'()*+,/:=@");
}

std::string makePath(std::string path, const std::vector<std::pair<std::string_view, std::string>>& query)
{
    char separator = '?';
    for (const auto& [name, value] : query) {
        path.append(1, separator).append(encoded(name, "")).append("=").append(encoded(value, ""));
        separator = '&';
    }
    return path;
}

} // namespace stillgate
