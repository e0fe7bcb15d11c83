#include "API/API.h"

#include <algorithm>

namespace stillgate::server
{

namespace
{

std::vector<std::string_view> segmentsOf(std::string_view path)
{
    std::vector<std::string_view> segments;
    for (std::size_t start = 1; start <= path.size();) {
        const auto end = std::min(path.find('/', start), path.size());
        segments.push_back(path.substr(start, end - start));
        start = end + 1;
    }
    return segments;
}

constexpr std::size_t longestOpenBody = 4096; ///< of those who aren't known

bool isArgument(std::string_view segment)
{
    return segment.starts_with('{');
}

/// The values of the pattern's arguments, if the path fits it.
std::optional<std::map<std::string, std::string>> argumentsOf(
    const std::string& pattern, const std::vector<std::string_view>& path)
{
    const auto wanted = segmentsOf(pattern);
    const auto fits = [](std::string_view wantedSegment, std::string_view segment) {
        return isArgument(wantedSegment) ? !segment.empty() : wantedSegment == segment;
    };
    if (!std::ranges::equal(wanted, path, fits))
        return std::nullopt;
    std::map<std::string, std::string> arguments;
    for (std::size_t position = 0; position < wanted.size(); ++position) {
        if (isArgument(wanted[position]))
            arguments.emplace(wanted[position].substr(1, wanted[position].size() - 2), percentDecoded(path[position]));
    }
    return arguments;
}

/// RFC 9110, 15.5.5 and 15.5.6.
Response answerWithoutRoute(const std::string& allowedMethods)
{
    if (allowedMethods.empty())
        return errorAnswer(404, "Not found");
    auto answer = errorAnswer(405, "This address has no such method");
    answer.headers.emplace_back("Allow", allowedMethods);
    return answer;
}

/// Throws a 401 unless the request carries a token that is in force.
Account accountOf(const Request& request, Database& database, Date now)
{
    constexpr std::string_view scheme = "Bearer ";
    const auto& authorization = request.header("Authorization");
    const bool hasToken = authorization.starts_with(scheme);
    const auto account =
        hasToken ? SignIns{database}.accountOf(authorization.substr(scheme.size()), now) : std::nullopt;
    if (!account)
        throw Refusal{401, "Not signed in, or the session has expired"};
    return *account;
}

} // namespace

void Call::requireJSON() const
{
    if (request.header("Content-Type").find("application/json") == std::string::npos)
        throw Refusal{415, "The body has to be JSON, and its Content-Type application/json"};
    // PostgreSQL keeps no NUL in a text.
    if (request.body.find("\\u0000") != std::string::npos)
        throw Refusal{400, "A text holds a NUL"};
}

API::API(Service& service, const Clock& clock, Log& log)
    : m_service(service)
    , m_clock(clock)
    , m_log(log)
{
    for (const auto& routes : {sessionRoutes(), accountRoutes(), blockRuleRoutes(), scheduleRoutes(), deviceRoutes(),
             screenTimeRoutes(), sharingRoutes(), guardianRoutes(), taskRoutes(), groupRoutes(), notificationRoutes()})
        m_routes.insert(m_routes.end(), routes.begin(), routes.end());
}

API::Match API::find(const Request& request) const
{
    const auto path = segmentsOf(std::string_view{request.path}.substr(prefix.size()));
    Match match;
    for (const auto& route : m_routes) {
        auto arguments = argumentsOf(route.pattern, path);
        if (!arguments)
            continue;
        if (route.method == request.method)
            return {.route = &route, .arguments = std::move(*arguments), .allowedMethods = {}};
        match.allowedMethods += (match.allowedMethods.empty() ? "" : ", ") + route.method;
    }
    return match;
}

Response API::run(const Match& match, const Request& request, Database& database)
{
    if (match.route->access == Access::everybody && request.body.size() > longestOpenBody)
        throw Refusal{413, "The body is larger than 4 KiB"};
    const auto work = [&] {
        Call call{.request = request,
            .arguments = match.arguments,
            .service = m_service,
            .database = database,
            .now = m_clock.now(),
            .account = {}};
        if (match.route->access == Access::signedIn)
            call.account = accountOf(request, database, call.now);
        return match.route->handle(call);
    };
    if (match.route->method == "GET")
        return database.inSnapshot(work);
    auto answer = database.inTransaction(work);
    if (match.route->wipesDeleted && !database.wipeDeleted())
        m_log.write("[Server] What was deleted is wiped later: somebody reads");
    return answer;
}

Response API::answer(const Request& request, Database& database)
{
    Match match;
    try {
        match = find(request);
        return match.route == nullptr ? answerWithoutRoute(match.allowedMethods) : run(match, request, database);
    } catch (const Refusal& refusal) {
        auto answer = errorAnswer(refusal.status(), refusal.what());
        if (refusal.status() == 401)
            answer.headers.emplace_back("WWW-Authenticate", "Bearer");
        return answer;
    } catch (const std::exception& error) {
        // The pattern, not the path: an address can hold a code or an id.
        const auto operation = match.route == nullptr ? std::string{"?"} : match.route->pattern;
        m_log.write("[Server] " + request.method + ' ' + operation + " failed: " + error.what());
        return errorAnswer(500, "The server couldn't do this; it has been logged");
    }
}

} // namespace stillgate::server
