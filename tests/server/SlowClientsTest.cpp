#include "Database/Database.h"
#include "HTTP/HTTPServer.h"
#include "HTTP/JSONAnswer.h"
#include "Operation/Deployment.h"
#include "Platform/Memory/MemoryLog.h"
#include "tests/server/RawConnection.h"
#include "tests/server/ServerProcess.h"

#include <gmock/gmock.h>

#include <atomic>
#include <future>
#include <sys/resource.h>
#include <thread>

namespace stillgate::test
{

using namespace std::chrono_literals;
using server::HTTPServer;
using server::Request;
using testing::HasSubstr;

namespace
{

/// Key and certificate for 127.0.0.1, the same for all tests.
class Certificates
{
public:
    static const Certificates& shared()
    {
        static const Certificates certificates;
        return certificates;
    }

    [[nodiscard]] HTTPServer::Certificate certificate() const
    {
        return {.chainFile = m_folder.path() / "server.pem", .keyFile = m_folder.path() / "server.key"};
    }

    [[nodiscard]] std::string authority() const { return fileBytes(m_folder.path() / "authority.pem"); }

private:
    Certificates()
    {
        server::DeploymentRequest request{.folder = m_folder.path(), .hosts = {"127.0.0.1"}, .configuration = {}};
        request.configuration.hasLoopbackSite = true;
        server::makeDeployment(request);
    }

    TemporaryFolder m_folder;
};

void echo(const Request& request, const HTTPServer::Answer& answer)
{
    answer({.status = 200,
        .contentType = "text/plain",
        .body = request.method + ' ' + request.path + ' ' + request.body,
        .headers = {}});
}

/// An HTTPServer on a thread of its own, with TLS on one port and without on another.
class OwnServer
{
public:
    explicit OwnServer(const HTTPServer::Limits& limits = {}, HTTPServer::Handler handler = echo)
        : m_server(std::move(handler), limits, m_log)
        , m_plainPort(m_server.listen("127.0.0.1", 0, nullptr))
        , m_port(listenEncrypted())
        , m_end(std::async(std::launch::async, [this] { m_server.run(); }))
    {}

    ~OwnServer() { stop(); }

    OwnServer(const OwnServer&) = delete;
    OwnServer& operator=(const OwnServer&) = delete;

    /// As SIGTERM does. False if the server goes on nevertheless.
    bool stop()
    {
        m_server.stop();
        return endsWithin(20s);
    }

    void beginToStop() { m_server.stop(); }

    [[nodiscard]] bool endsWithin(std::chrono::milliseconds time) const
    {
        return m_end.wait_for(time) == std::future_status::ready;
    }

    [[nodiscard]] RawConnection plain() const { return RawConnection{m_plainPort}; }

    [[nodiscard]] RawConnection encrypted() const { return RawConnection{m_port, Certificates::shared().authority()}; }

    /// To the port where a handshake is expected.
    [[nodiscard]] RawConnection withoutHandshake() const { return RawConnection{m_port}; }

private:
    std::uint16_t listenEncrypted()
    {
        const auto certificate = Certificates::shared().certificate();
        return m_server.listen("127.0.0.1", 0, &certificate);
    }

    MemoryLog m_log;
    HTTPServer m_server;
    std::uint16_t m_plainPort;
    std::uint16_t m_port;
    std::future<void> m_end;
};

bool isServed(RawConnection connection)
{
    connection.send(rawRequest("GET", "/"));
    const auto answer = connection.answer();
    return answer && answer->status == 200;
}

std::string post(const std::string& headers, const std::string& body = {})
{
    return "POST / HTTP/1.1\r\nHost: a\r\n" + headers + "\r\n" + body;
}

std::string postOfLength(std::size_t length)
{
    return post("Content-Length: " + std::to_string(length) + "\r\n", std::string(length, 'x'));
}

std::string requestWithHeaderOf(std::size_t length)
{
    return "GET / HTTP/1.1\r\nHost: a\r\nX-Long: " + std::string(length, 'x') + "\r\n\r\n";
}

void allowManyDescriptors()
{
    rlimit limit{};
    ::getrlimit(RLIMIT_NOFILE, &limit);
    limit.rlim_cur = limit.rlim_max;
    ::setrlimit(RLIMIT_NOFILE, &limit);
}

/// Connections that send a byte of a request every 100 ms, that send nothing, and that stop within the handshake: a
/// hundred of each. They are there when the constructor is done.
class Crowd
{
public:
    explicit Crowd(const ServerProcess& server)
    {
        constexpr int half = 50;
        const auto authority = server.authority();
        for (int number = 0; number < half; ++number) {
            m_dripping.emplace_back(server.port(), authority);
            m_dripping.emplace_back(server.sitePort());
            m_silent.emplace_back(server.port(), authority);
            m_silent.emplace_back(server.sitePort());
            m_inHandshake.emplace_back(server.port());
            m_inHandshake.emplace_back(server.port()).send("\x16\x03\x01\x02"); // of the header of a TLS record
        }
        m_thread = std::jthread{[this](const std::stop_token& stop) {
            while (!stop.stop_requested()) {
                for (auto& connection : m_dripping)
                    connection.send("G");
                std::this_thread::sleep_for(100ms);
            }
        }};
    }

private:
    std::vector<RawConnection> m_dripping;
    std::vector<RawConnection> m_silent;
    std::vector<RawConnection> m_inHandshake;
    std::jthread m_thread;
};

} // namespace

TEST(SlowClients, delayNobodyElse)
{
    allowManyDescriptors();
    const ServerProcess server;
    const auto authority = server.authority();
    const Crowd crowd{server};
    for (int round = 0; round < 20; ++round) {
        const auto begin = std::chrono::steady_clock::now();
        RawConnection api{server.port(), authority};
        api.send(rawRequest("GET", "/v1/app-config"));
        EXPECT_EQ(api.answer().value_or(RawAnswer{}).status, 200);
        RawConnection site{server.sitePort()};
        site.send(rawRequest("GET", "/src/pages/auth/login.html"));
        EXPECT_EQ(site.answer().value_or(RawAnswer{}).status, 200);
        EXPECT_LT(std::chrono::steady_clock::now() - begin, HTTPServer::Limits{}.header / 5);
    }
}

TEST(SlowClients, areCutOff)
{
    // There is place for one connection alone: another is served if and only if this one was cut.
    HTTPServer::Limits limits{.connections = 1};
    limits.handshake = limits.header = limits.body = limits.answer = limits.farewell = 200ms;
    const auto handler = [](const Request& request, const HTTPServer::Answer& answer) {
        answer({.body = std::string(request.path == "/large" ? 64'000'000 : 1, 'x')});
    };

    struct Case
    {
        const char* name;
        RawConnection (OwnServer::*open)() const;
        std::string beginning;
        std::string drip;
    };

    const std::string get = rawRequest("GET", "/");
    const std::vector<Case> cases{
        {"says nothing", &OwnServer::plain, "", ""},
        {"says nothing after the handshake", &OwnServer::encrypted, "", ""},
        {"begins no handshake", &OwnServer::withoutHandshake, "", ""},
        {"drips a handshake", &OwnServer::withoutHandshake, {"\x16\x03\x01\x7f\x00", 5}, "\x01"},
        {"drips a header", &OwnServer::encrypted, "GET / HTTP/1.1\r\nX: ", "x"},
        {"drips a body", &OwnServer::encrypted, post("Content-Length: 1000000\r\n"), "x"},
        {"drips chunks", &OwnServer::plain, post("Transfer-Encoding: chunked\r\n"), "1\r\nx\r\n"},
        {"stays after an answer", &OwnServer::encrypted, get, ""},
        {"takes no answer", &OwnServer::plain, rawRequest("GET", "/large"), ""},
        {"stays after the last answer", &OwnServer::encrypted, "GET / HTTP/1.0\r\n\r\n", ""},
        {"goes on after the last answer", &OwnServer::plain, "nonsense\r\n\r\n", "x"},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.name);
        const OwnServer server{limits, handler};
        auto slow = (server.*each.open)();
        slow.send(each.beginning);
        const auto deadline = std::chrono::steady_clock::now() + 10s;
        bool isCut = false;
        while (!isCut && std::chrono::steady_clock::now() < deadline) {
            slow.send(each.drip);
            std::this_thread::sleep_for(20ms);
            isCut = isServed(server.plain());
        }
        EXPECT_TRUE(isCut);
    }
}

TEST(HTTPServer, refusesWhatItCannotTakeAndIsHeard)
{
    const OwnServer server;
    constexpr std::size_t mebibyte = 1024 * 1024;

    struct Case
    {
        int status;
        std::string bytes;
    };

    const std::vector<Case> cases{
        {200, postOfLength(mebibyte)},
        {413, postOfLength(mebibyte + 1)},
        {413, postOfLength(8 * mebibyte)},
        {413,
            post(
                "Transfer-Encoding: chunked\r\n", "200001\r\n" + std::string(2 * mebibyte + 1, 'x') + "\r\n0\r\n\r\n")},
        {200, requestWithHeaderOf(15'000)},
        {431, requestWithHeaderOf(17'000)},
        {431, requestWithHeaderOf(200'000)},
        {400, "nonsense\r\n\r\n"},
        {400, "GET /\r\n\r\n"},
        {400, "GET / HTTP/2.0\r\n\r\n"},
        {400, "GET / HTTP/1.1\r\nno colon\r\n\r\n"},
        {400, "GET / HTTP/1.1\r\nHost : a\r\n\r\n"},
        {400, std::string{"GET / HTTP/1.1\r\nX: \0\r\n\r\n", 24}},
        {400, post("Content-Length: -1\r\n")},
        {400, post("Content-Length: 1\r\nContent-Length: 2\r\n", "xx")},
        {400, post("Content-Length: 3\r\nTransfer-Encoding: chunked\r\n", "0\r\n\r\n")},
        {400, post("Transfer-Encoding: chunked\r\n", "many\r\nx\r\n0\r\n\r\n")},
    };
    for (const auto open : {&OwnServer::plain, &OwnServer::encrypted}) {
        for (const auto& each : cases) {
            SCOPED_TRACE(each.bytes.substr(0, 80));
            auto connection = (server.*open)();
            connection.send(each.bytes);
            const auto answer = connection.answer();
            ASSERT_TRUE(answer);
            EXPECT_EQ(answer->status, each.status);
            if (each.status == 200)
                continue;
            EXPECT_EQ(answer->headers.at("content-type"), "application/json");
            EXPECT_THAT(answer->body, HasSubstr(R"({"error":")"));
            EXPECT_TRUE(connection.isClosedWithin(10s));
        }
    }
}

TEST(HTTPServer, conversesOverOneConnection)
{
    const OwnServer server;
    for (const auto open : {&OwnServer::plain, &OwnServer::encrypted}) {
        auto connection = (server.*open)();
        const auto expectAnswer = [&](const std::string& body) {
            const auto answer = connection.answer();
            ASSERT_TRUE(answer);
            EXPECT_EQ(answer->body, body);
        };
        connection.send(post("Transfer-Encoding: chunked\r\n", "3\r\nabc\r\n2;x=y\r\nde\r\n0\r\nTrailer: t\r\n\r\n"));
        expectAnswer("POST / abcde");

        connection.send(rawRequest("GET", "/1") + postOfLength(3) + rawRequest("GET", "/2"));
        expectAnswer("GET /1 ");
        expectAnswer("POST / xxx");
        expectAnswer("GET /2 ");

        connection.send(rawRequest("HEAD", "/12345") + rawRequest("GET", "/next"));
        const auto head = connection.answerToHead();
        ASSERT_TRUE(head);
        EXPECT_EQ(head->headers.at("content-length"), std::to_string(std::string{"HEAD /12345 "}.size()));
        expectAnswer("GET /next ");

        connection.send(post("Content-Length: 2\r\nExpect: 100-continue\r\n"));
        EXPECT_EQ(connection.answer().value_or(RawAnswer{}).status, 100);
        connection.send("xy");
        expectAnswer("POST / xy");

        connection.send("GET / HTTP/1.0\r\n\r\n");
        expectAnswer("GET / ");
        EXPECT_TRUE(connection.isClosedWithin(10s));
    }
}

TEST(HTTPServer, outlivesPeersThatVanishOrMiscount)
{
    std::atomic<int> answered = 0;
    OwnServer server{{}, [&](const Request& request, const HTTPServer::Answer& answer) {
                         ++answered;
                         if (request.path == "/large-header") // larger than a header can be
                             answer({.status = 302, .headers = {{"Location", std::string(70'000, 'x')}}});
                         else
                             answer({.body = std::string(request.path == "/large" ? 20'000'000 : 1, 'x')});
                     }};
    const std::vector<std::string> beginnings{"", "GET / HT", post("Content-Length: 10\r\n", "abc"),
        post("Transfer-Encoding: chunked\r\n", "5\r\nab"), rawRequest("GET", "/large"),
        rawRequest("GET", "/large-header")};
    for (const auto open : {&OwnServer::plain, &OwnServer::encrypted, &OwnServer::withoutHandshake}) {
        for (const auto& beginning : beginnings) {
            auto connection = (server.*open)();
            connection.send(beginning);
            connection.reset();
        }
    }
    auto redirected = server.plain();
    redirected.send(rawRequest("GET", "/large-header"));
    EXPECT_TRUE(redirected.isClosedWithin(10s));
    // A body that is longer than it says is the beginning of another request.
    auto miscounting = server.plain();
    miscounting.send(post("Content-Length: 1\r\n", "abc\r\n\r\n"));
    EXPECT_EQ(miscounting.answer().value_or(RawAnswer{}).status, 200);
    EXPECT_EQ(miscounting.answer().value_or(RawAnswer{}).status, 400);

    EXPECT_TRUE(isServed(server.encrypted()));
    EXPECT_TRUE(server.stop());
    EXPECT_GE(answered, 2);
}

TEST(HTTPServer, closesConnectionsOverTheLimitUntilThereIsPlace)
{
    const OwnServer server{{.connections = 2}};
    const auto hold = [&] {
        auto connection = server.encrypted();
        connection.send(rawRequest("GET", "/"));
        EXPECT_TRUE(connection.answer());
        return connection;
    };
    const auto first = hold();
    {
        const auto second = hold();
        EXPECT_FALSE(isServed(server.plain()));
        EXPECT_TRUE(server.withoutHandshake().isClosedWithin(10s));
    }
    bool isServedAgain = false;
    for (int attempt = 0; attempt < 500 && !isServedAgain; ++attempt) {
        isServedAgain = isServed(server.plain());
        std::this_thread::sleep_for(isServedAgain ? 0ms : 10ms);
    }
    EXPECT_TRUE(isServedAgain);
}

TEST(HTTPServer, answersWhatItHasBegunBeforeItStops)
{
    std::promise<HTTPServer::Answer> held;
    OwnServer server{{}, [&](const Request&, const HTTPServer::Answer& answer) { held.set_value(answer); }};
    auto idle = server.plain();
    auto connection = server.encrypted();
    connection.send(rawRequest("GET", "/"));
    const auto answer = held.get_future().get();
    server.beginToStop();
    EXPECT_FALSE(server.endsWithin(100ms));
    EXPECT_THROW(static_cast<void>(server.plain()), std::runtime_error);
    answer({.status = 200, .contentType = "text/plain", .body = "at last", .headers = {}});
    const auto received = connection.answer();
    ASSERT_TRUE(received);
    EXPECT_EQ(received->body, "at last");
    EXPECT_EQ(received->headers.at("connection"), "close");
    EXPECT_TRUE(server.stop());
}

TEST(ServerProcess, answersARequestInFlightWhenItIsTerminated)
{
    ServerProcess server;
    const auto device = server.addDevices(1).front();
    const auto authority = server.authority();
    // While the test writes, the server's own writing waits.
    server::Database database{server.database()};
    database.command("BEGIN IMMEDIATE");
    RawConnection connection{server.port(), authority};
    connection.send(rawRequest("POST", "/v1/sharing/report-usage", device.token, R"({"usedMinutes":7})"));
    // By the time that a whole other conversation is over, the server has read the request.
    RawConnection other{server.port(), authority};
    other.send(rawRequest("GET", "/v1/sharing/budget", device.token));
    EXPECT_THAT(other.answer().value_or(RawAnswer{}).body, HasSubstr(R"("usedMinutesToday":0)"));
    server.terminate();
    const auto hasClosedItsPorts = [&] {
        try {
            const RawConnection late{server.sitePort()};
            return false;
        } catch (const std::runtime_error&) {
            return true;
        }
    };
    for (int attempt = 0; attempt < 500 && !hasClosedItsPorts(); ++attempt)
        std::this_thread::sleep_for(10ms);
    EXPECT_TRUE(hasClosedItsPorts());
    database.command("COMMIT");
    EXPECT_EQ(connection.answer().value_or(RawAnswer{}).status, 200);
    EXPECT_EQ(server.waitForEnd(), 0);
    EXPECT_EQ(database.number("SELECT MAX(used_minutes) FROM usage_reports"), 7);
}

} // namespace stillgate::test
