#include "Database/Database.h"
#include "Models/APIBodies.h"
#include "Models/JSONCoding.h"
#include "Models/ScreenTime.h"
#include "Subjects.h"
#include "tests/server/ServerProcess.h"

#include <QDateTime>

#include <algorithm>
#include <boost/asio/awaitable.hpp>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/ssl/context.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <boost/beast/core.hpp>
#include <boost/beast/http.hpp>
#include <boost/beast/ssl.hpp>
#include <cmath>
#include <span>

namespace stillgate
{

using namespace std::chrono_literals;

namespace
{

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace http = boost::beast::http;
using asio::use_awaitable;
using asio::ip::tcp;
using test::SignedInDevice;

constexpr int deviceCount = 1000;
constexpr int devicesInARun = 250;
constexpr int runs = 8;
constexpr int requestsOfADevice = 4; ///< every five minutes
constexpr int writesOfADevice = 3;   ///< of these
constexpr int atOnce = 32;           ///< connections
constexpr auto requestsOfARun = devicesInARun * requestsOfADevice;
constexpr Seconds timeForARequest = Seconds{5min} / (deviceCount * requestsOfADevice);
constexpr Seconds latencyBudget = 1s;

enum class Connections { kept, oneForEachRequest };

using Stream = beast::ssl_stream<beast::tcp_stream>;
using Message = http::request<http::string_body>;

template <class T>
std::string json(const T& record)
{
    return JSONEncoder{DateForm::iso8601}.encode(record).value();
}

/// What a device tells and asks every five minutes, in the `beat`-th of them.
std::vector<Message> requestsOf(const SignedInDevice& device, int beat)
{
    DailyScreenTime day{.date = QDateTime::currentDateTimeUtc().date().toString(Qt::ISODate).toStdString(),
        .totalMinutes = beat,
        .pickupCount = beat,
        .appUsage = std::vector<AppUsageEntry>{},
        .categoryTotals = std::map<std::string, std::int64_t>{{"gaming", beat}, {"news", beat}}};
    for (const auto* app : {"browser", "editor", "game", "mail", "music", "player", "reader", "terminal"})
        day.appUsage->push_back({.identifier = std::string{"org.example."} + app, .name = app, .minutes = beat});

    const auto message = [&](http::verb verb, const std::string& target, std::string body) {
        Message request{verb, "/v1" + target, 11};
        request.set(http::field::host, "127.0.0.1");
        request.set(http::field::authorization, "Bearer " + device.token);
        if (!body.empty())
            request.set(http::field::content_type, "application/json");
        request.body() = std::move(body);
        request.prepare_payload();
        return request;
    };
    return {
        message(http::verb::post, "/devices/" + device.deviceId + "/heartbeat", json(HeartbeatBody{})),
        message(http::verb::post, "/sharing/report-usage", json(ReportUsageBody{.usedMinutes = beat})),
        message(http::verb::post, "/screen-time/daily", json(day)),
        message(http::verb::get, "/sharing/budget", {}),
    };
}

/// Many devices at once, from one thread.
class Load
{
public:
    explicit Load(const test::ServerProcess& server)
        : m_server(asio::ip::address_v4::loopback(), server.port())
    {
        m_trust.set_verify_mode(asio::ssl::verify_peer);
        m_trust.add_certificate_authority(asio::buffer(server.authority()));
    }

    /// The requests of each device, one after the other.
    void serve(std::span<const SignedInDevice> devices, Connections connections)
    {
        ++m_beat;
        m_devices = devices;
        run([this, connections] { return workOff(connections); });
    }

    /// As many connections as `serve` makes at most, without a request.
    void shakeHands()
    {
        m_handshakes = requestsOfARun;
        run([this] { return shakeHandsWhileAsked(); });
    }

    [[nodiscard]] Seconds percentile99()
    {
        const auto place = m_latencies.begin() + std::ssize(m_latencies) * 99 / 100;
        std::ranges::nth_element(m_latencies, place);
        return *place;
    }

private:
    template <class Work>
    void run(Work work)
    {
        std::exception_ptr failure;
        for (int number = 0; number < atOnce; ++number)
            asio::co_spawn(m_context, work(),
                [&failure](const std::exception_ptr& thrown) { failure = thrown ? thrown : failure; });
        m_context.restart();
        m_context.run();
        if (failure)
            std::rethrow_exception(failure);
    }

    asio::awaitable<void> connect(std::optional<Stream>* stream)
    {
        stream->emplace(m_context, m_trust);
        auto& transport = (*stream)->next_layer();
        transport.expires_after(30s);
        co_await transport.async_connect(m_server, use_awaitable);
        transport.socket().set_option(tcp::no_delay{true});
        co_await (*stream)->async_handshake(asio::ssl::stream_base::client, use_awaitable);
    }

    asio::awaitable<void> workOff(Connections connections)
    {
        std::optional<Stream> stream;
        while (!m_devices.empty()) {
            const auto device = m_devices.front();
            m_devices = m_devices.subspan(1);
            for (auto& request : requestsOf(device, m_beat)) {
                request.keep_alive(connections == Connections::kept);
                const auto begin = std::chrono::steady_clock::now();
                if (!stream || connections == Connections::oneForEachRequest)
                    co_await connect(&stream);
                stream->next_layer().expires_after(30s);
                co_await http::async_write(*stream, request, use_awaitable);
                beast::flat_buffer buffer;
                http::response<http::string_body> response;
                co_await http::async_read(*stream, buffer, response, use_awaitable);
                m_latencies.emplace_back(std::chrono::steady_clock::now() - begin);
                if (response.result() != http::status::ok)
                    throw std::runtime_error{std::string{request.target()} + ": " + response.body()};
            }
        }
    }

    asio::awaitable<void> shakeHandsWhileAsked()
    {
        std::optional<Stream> stream;
        while (m_handshakes-- > 0)
            co_await connect(&stream);
    }

    tcp::endpoint m_server;
    asio::io_context m_context{1};
    asio::ssl::context m_trust{asio::ssl::context::tls_client};
    std::span<const SignedInDevice> m_devices; ///< that nobody has taken yet
    int m_handshakes = 0;
    int m_beat = 0;
    std::vector<Seconds> m_latencies;
};

/// The database alone doing as many commits as a run has writes.
class Commits
{
public:
    explicit Commits(const std::filesystem::path& folder)
        : m_database((folder / "commits.db").string())
    {
        m_database.command("CREATE TABLE reports (id TEXT PRIMARY KEY, minutes BIGINT NOT NULL)");
    }

    void run()
    {
        for (int number = 0; number < devicesInARun * writesOfADevice; ++number) {
            m_database.inTransaction([&] {
                m_database.execute("INSERT INTO reports (id, minutes) VALUES (?, 1) "
                                   "ON CONFLICT (id) DO UPDATE SET minutes = reports.minutes + 1",
                    std::to_string(number));
            });
        }
    }

private:
    server::Database m_database;
};

void measureServer(benchmark::State& state, Report& report, Connections connections, const std::string& what)
try {
    test::ServerProcess server;
    const auto devices = server.addDevices(deviceCount);
    Load load{server};
    Commits commits{server.folder()};

    std::size_t next = 0;
    const auto work = [&] {
        load.serve(std::span{devices}.subspan(next, devicesInARun), connections);
        next = (next + devicesInARun) % devices.size();
        return true;
    };
    const bool areKept = connections == Connections::kept;
    const auto peer = [&] {
        if (areKept)
            commits.run();
        else
            load.shakeHands();
        return true;
    };
    const auto medians = mediansOfBoth(state, work, peer);
    const auto request = medians.ours / requestsOfARun;
    const auto row = "a request, " + what + " (" + std::to_string(std::lround(1 / request.count())) + " a second)";
    report.add(row, request, Yardstick{"what 1,000 devices need", timeForARequest});
    report.add(row, request,
        Yardstick{
            areKept ? "3/4 of a commit, nothing else" : "a handshake, nothing else", medians.peers / requestsOfARun});
    report.add("its 99th percentile", load.percentile99(), Yardstick{"budget", latencyBudget});
} catch (const std::exception& problem) {
    report.fail(what, problem.what());
    state.SkipWithError(problem.what());
}

} // namespace

void registerServerBenchmarks(Report& report)
{
    const auto add = [&report](Connections connections, const std::string& what) {
        benchmark::RegisterBenchmark(what.c_str(),
            [&report, connections, what](benchmark::State& state) { measureServer(state, report, connections, what); })
            ->UseManualTime()
            ->Iterations(runs);
    };
    add(Connections::kept, "32 kept connections");
    add(Connections::oneForEachRequest, "32 new connections at once");
}

} // namespace stillgate
