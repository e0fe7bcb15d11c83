#pragma once

#include "API/Route.h"
#include "Platform/Clock.h"
#include "Platform/Log.h"

namespace stillgate::server
{

/// The operations under "/v1": finds the one that is asked for, lets in who may, and runs it in one transaction.
///
/// An operation refuses by throwing a Refusal, and then has changed nothing. One that answers with a failure instead
/// keeps what it changed, such as a counted try.
class API
{
public:
    API(Service& service, const Clock& clock, Log& log);

    /// Never throws. Every failure is `{"error": "…"}`.
    [[nodiscard]] Response answer(const Request& request, Database& database);

    static constexpr std::string_view prefix = "/v1";

private:
    struct Match
    {
        const Route* route = nullptr;
        std::map<std::string, std::string> arguments;
        std::string allowedMethods; ///< where there is no route: what this path has instead
    };

    [[nodiscard]] Match find(const Request& request) const;
    [[nodiscard]] Response run(const Match& match, const Request& request, Database& database);

    Service& m_service;
    const Clock& m_clock;
    Log& m_log;
    Routes m_routes;
};

} // namespace stillgate::server
