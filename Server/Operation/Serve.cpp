#include "Operation/Serve.h"

#include "HTTP/HTTPServer.h"
#include "Operation/Backend.h"
#include "Operation/Certificates.h"
#include "Operation/WorkerPool.h"

#include <condition_variable>
#include <fstream>
#include <iostream>
#include <mutex>
#include <sys/resource.h>
#include <thread>

namespace stillgate::server
{

namespace
{

constexpr int workers = 4; ///< a password takes one of them a tenth of a second
constexpr std::chrono::hours tidyingPeriod{1};

/// As many connections as the system allows, each of which is a descriptor.
void raiseDescriptorLimit()
{
    rlimit limit{};
    if (::getrlimit(RLIMIT_NOFILE, &limit) != 0)
        return;
    limit.rlim_cur = limit.rlim_max;
    ::setrlimit(RLIMIT_NOFILE, &limit);
}

std::string webSiteOf(const Configuration& configuration, std::uint16_t loopbackPort)
{
    if (!configuration.webSite.empty())
        return configuration.webSite;
    return "http://127.0.0.1:" + std::to_string(loopbackPort);
}

/// Does the work now and again every hour, until it is destroyed.
class Hourly
{
public:
    explicit Hourly(std::function<void()> work)
        : m_thread([this, todo = std::move(work)](const std::stop_token& stop) {
            std::unique_lock lock{m_mutex};
            while (!stop.stop_requested()) {
                todo();
                m_hasEnded.wait_for(lock, stop, tidyingPeriod, [] { return false; });
            }
        })
    {}

private:
    std::mutex m_mutex;
    std::condition_variable_any m_hasEnded;
    std::jthread m_thread;
};

/// What answers, from the first request to the last.
struct Answering
{
    Backend backend;
    WorkerPool pool;
    Hourly tidying{[this] { static_cast<void>(pool.post([this](Database& database) { backend.tidy(database); })); }};
};

std::uint16_t listen(HTTPServer& server, const Configuration& configuration)
{
    const HTTPServer::Certificate certificate{.chainFile = configuration.certificate, .keyFile = configuration.key};
    try {
        return server.listen(configuration.address, configuration.port, &certificate);
    } catch (const std::exception& failure) {
        throw ConfigurationFault{"Can't listen on " + configuration.address + ':' + std::to_string(configuration.port) +
            " with " + certificate.chainFile + " and " + certificate.keyFile + ": " + failure.what()};
    }
}

/// Renewed or not, it is the operator's doing: nothing else tells them in time.
void warnOfExpiry(const std::filesystem::path& certificate, Date now, Log& log)
{
    constexpr std::chrono::days soon{30};
    std::ifstream file{certificate};
    const std::string pem{std::istreambuf_iterator{file}, {}};
    const auto left = daysLeft(pem, now);
    if (left < soon)
        log.write("[Server] The certificate expires in " + std::to_string(left.count()) +
            " days: stillgate-server renew-certificate, or a new one of its authority");
}

} // namespace

void serve(const Configuration& configuration, const std::filesystem::path& file, const Clock& clock, Log& log)
{
    raiseDescriptorLimit();
    Answering* answering = nullptr;
    const auto handle = [&](Request request, const HTTPServer::Answer& answer) {
        const bool isTaken =
            answering->pool.post([answering, request = std::move(request), answer](
                                     Database& database) { answer(answering->backend.answer(request, database)); });
        if (!isTaken)
            answer(errorAnswer(503, "The server is too busy"));
    };
    HTTPServer server{handle, {}, log};
    const auto port = listen(server, configuration);
    const auto sitePort =
        configuration.hasLoopbackSite ? server.listen("127.0.0.1", configuration.loopbackSitePort, nullptr) : 0;
    const auto webSite = webSiteOf(configuration, sitePort);

    // Goes before the server: what the workers have begun they finish, and answer.
    Answering actual{.backend = {{.configurationFile = file, .webSite = webSite}, clock, log},
        .pool = {workers, configuration.database}};
    answering = &actual;
    warnOfExpiry(configuration.certificate, clock.now(), log);

    std::cout << "Listening on https://" << configuration.address << ':' << port << "\nThe web site is at " << webSite
              << std::endl;
    server.run();
}

} // namespace stillgate::server
