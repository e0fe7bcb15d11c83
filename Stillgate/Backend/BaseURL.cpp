#include "Backend/BaseURL.h"

#include "Platform/Text.h"

#include <QUrl>

namespace stillgate
{

namespace
{

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
        const auto written = candidate.value_or("");
        std::string text{trimmed(trimmed(written), "/")};
        if (!text.empty() && isBaseURL(text, log))
            return text;
    }
    return std::nullopt;
}

} // namespace stillgate
