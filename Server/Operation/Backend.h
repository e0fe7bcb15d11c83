#pragma once

#include "API/API.h"
#include "API/LiveAppConfig.h"
#include "Web/WebSite.h"

namespace stillgate::server
{

/// Everything that answers: the API under "/v1", over TLS alone, and the web site everywhere else.
class Backend
{
public:
    struct Settings
    {
        std::filesystem::path configurationFile; ///< of which [app-config] is followed
        std::string webSite;                     ///< address of the web site, without a slash at its end
        PasswordCost passwordCost = ordinaryPasswordCost();
    };

    Backend(const Settings& settings, const Clock& clock, Log& log);

    /// From any thread, with that thread's connection. Never throws.
    [[nodiscard]] Response answer(const Request& request, Database& database);

    /// Deletes what has expired.
    void tidy(Database& database);

private:
    [[nodiscard]] Response answerForAPI(const Request& request, Database& database);

    const Clock& m_clock;
    Log& m_log;
    Texts m_texts;
    LiveAppConfig m_appConfig;
    Service m_service;
    API m_api;
    WebSite m_site;
};

} // namespace stillgate::server
