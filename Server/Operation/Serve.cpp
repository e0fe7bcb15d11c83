#include "Operation/Serve.h"

#include "HTTP/HTTPServer.h"
#include "Operation/Backend.h"
#include "Operation/WorkerPool.h"

#include <condition_variable>
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

} // namespace

void serve(const Configuration& configuration, const std::filesystem::path& file, const Clock& clock, Log& log)
{
    raiseDescriptorLimit();
    std::unique_ptr<Backend> backend;
    std::unique_ptr<WorkerPool> pool;

    HTTPServer server{[&](Request request, const HTTPServer::Answer& answer) {
                          const bool isTaken =
                              pool->post([&backend, request = std::move(request), answer](
                                             Database& database) { answer(backend->answer(request, database)); });
                          if (!isTaken)
                              answer(errorAnswer(503, "The server is too busy"));
                      },
        {}, log};
    const HTTPServer::Certificate certificate{.chainFile = configuration.certificate, .keyFile = configuration.key};
    const auto port = server.listen(configuration.address, configuration.port, &certificate);
    const auto sitePort =
        configuration.hasLoopbackSite ? server.listen("127.0.0.1", configuration.loopbackSitePort, nullptr) : 0;
    const auto webSite = webSiteOf(configuration, sitePort);

    backend = std::make_unique<Backend>(Backend::Settings{.configurationFile = file, .webSite = webSite}, clock, log);
    pool = std::make_unique<WorkerPool>(workers, configuration.database);
    const Hourly tidying{[&] { static_cast<void>(pool->post([&](Database& database) { backend->tidy(database); })); }};

    std::cout << "Listening on https://" << configuration.address << ':' << port << "\nThe web site is at " << webSite
              << std::endl;
    server.run();
    pool.reset(); // finishes what it has begun, and answers it, while the server is still there
}

} // namespace stillgate::server
