#include "Backend/BaseURL.h"

#include <QUrl>

namespace stillgate
{

namespace
{

std::string trimmed(std::string_view text, std::string_view characters)
{
    const auto first = text.find_first_not_of(characters);
    if (first == std::string_view::npos)
        return {};
    return std::string{text.substr(first, text.find_last_not_of(characters) - first + 1)};
}

bool isBaseURL(const std::string& text, Log& log)
{
    const QUrl url{QString::fromStdString(text), QUrl::StrictMode};
    if (!url.isValid() || url.scheme().isEmpty() || url.host().isEmpty())
        return false;
    if (url.scheme() != QLatin1String{"https"}) { // QUrl gives it in lower case
        log.write("[Stillgate] Rejecting non-HTTPS URL: " + text);
        return false;
    }
    return text.ends_with("/v1");
}

} // namespace

std::optional<std::string> resolveBaseURL(const std::vector<std::optional<std::string>>& candidates, Log& log)
{
    for (const auto& candidate : candidates) {
        auto text = trimmed(trimmed(candidate.value_or(""), " \t\r\n\v\f"), "/");
        if (!text.empty() && isBaseURL(text, log))
            return text;
    }
    return std::nullopt;
}

} // namespace stillgate
