#include "tests/dnsproxy/ProxyProcess.h"
#include "tests/dnsproxy/TestUpstream.h"

#include <gtest/gtest.h>

#include <sys/wait.h>

namespace stillgate
{

using namespace test;
using namespace std::chrono_literals;

namespace
{

constexpr int nameError = 3;
constexpr int refused = 5;

class Answering : public testing::Test
{
protected:
    Answering()
    {
        m_proxy.block("1000", {"Blocked.example.", "1.2.3.4.5.6.7.deep.example"});
        m_proxy.block("1001", {"other.example"});
        m_proxy.start();
    }

    TestUpstream m_upstream;
    ProxyProcess m_proxy{{.upstreams = {m_upstream.address()}}};
};

} // namespace

TEST_F(Answering, blockedNamesDoNotExistWhateverIsAsked)
{
    for (const auto* name : {"blocked.example", "BLOCKED.example.", "a.b.c.d.e.f.g.h.Blocked.Example", "other.example",
             "x.1.2.3.4.5.6.7.deep.example", "use-application-dns.net", "www.use-application-dns.net"}) {
        for (const std::uint16_t type : {1, 2, 5, 6, 12, 15, 16, 28, 33, 64, 65, 252, 255, 65'280}) {
            const auto packet = m_proxy.ask({.name = name, .type = type, .id = type});
            EXPECT_EQ(packet.code(), nameError) << name << ' ' << type;
            EXPECT_EQ(packet.id, type);
            EXPECT_EQ(packet.flags, 0x8183) << name;
            EXPECT_EQ(packet.name, std::string{name} + (std::string{name}.ends_with('.') ? "" : "."))
                << "as it was asked";
            EXPECT_EQ(packet.type, type);
            const auto* zone = packet.find(6);
            ASSERT_NE(zone, nullptr);
            EXPECT_EQ(zone->section, 'u');
            EXPECT_EQ(zone->ttl, 10U);
            EXPECT_EQ(packet.records.size(), 1U) << "no OPT to who had none";
        }
    }
    EXPECT_TRUE(m_upstream.senders().empty()) << "nobody else is asked";
    EXPECT_EQ(m_proxy.ask({.name = "www.blocked.example"}).find(6)->name, "blocked.example.");
    EXPECT_EQ(m_proxy.ask({.name = "blocked.example", .flags = 0x0010}).flags, 0x8093) << "RD and CD are copied";
    for (const std::uint16_t recordClass : {0, 2, 4, 254, 255})
        EXPECT_EQ(m_proxy.ask({.name = "blocked.example", .recordClass = recordClass}).code(), nameError);
}

TEST_F(Answering, extendedQueriesGetExtendedAnswers)
{
    const auto packet = m_proxy.ask({.name = "blocked.example",
        .edns = 1232,
        .ednsFlags = 0x8000,
        .ednsOptions = {0, 10, 0, 8, 1, 2, 3, 4, 5, 6, 7, 8}});
    const auto* opt = packet.find(41);
    ASSERT_NE(opt, nullptr);
    EXPECT_EQ(packet.code(), nameError);
    EXPECT_EQ(opt->ttl, 0x8000U) << "DO, version 0";
    EXPECT_TRUE(opt->data.empty());

    const auto newer = m_proxy.ask({.name = "blocked.example", .edns = 1232, .ednsFlags = 0x10000});
    EXPECT_EQ(newer.code(), 0);
    EXPECT_EQ(newer.find(41)->ttl >> 24U, 1U) << "BADVERS is 16";
}

TEST_F(Answering, streamsTakeSeveralQueriesInPieces)
{
    const auto socket = connectedSocket(SOCK_STREAM, m_proxy.port());
    Bytes queries;
    for (std::uint16_t id = 1; id <= 100; ++id)
        dns::append(
            queries, streamMessage(bytesOf({.name = id % 2 == 0 ? "blocked.example" : "open.example", .id = id})));
    for (std::size_t at = 0; at < queries.size(); at += 50)
        sendBytes(socket.number(), dns::View{queries}.subspan(at, std::min<std::size_t>(50, queries.size() - at)));
    std::vector<bool> isAnswered(101);
    for (int left = 100; left > 0; --left) {
        const auto answer = streamMessageFrom(socket.number());
        ASSERT_TRUE(answer) << left;
        const auto packet = Packet::from(*answer);
        EXPECT_EQ(packet.code(), packet.id % 2 == 0 ? nameError : 0);
        EXPECT_FALSE(isAnswered.at(packet.id)) << "twice";
        isAnswered.at(packet.id) = true;
    }
    ::shutdown(socket.number(), SHUT_WR);
    EXPECT_FALSE(streamMessageFrom(socket.number())) << "closed behind us";
}

TEST_F(Answering, slowStreamsAreClosedAndHoldUpNobody)
{
    std::vector<FileDescriptor> slow;
    for (int number = 0; number < 300; ++number) {
        slow.push_back(connectedSocket(SOCK_STREAM, m_proxy.port()));
        ::send(slow.back().number(), "\0", 1, MSG_NOSIGNAL);
    }
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(m_proxy.askByStream({.name = "blocked.example"}).code(), nameError);
    EXPECT_EQ(streamMessageFrom(slow.front().number()), std::nullopt);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 5s) << "the one that was idle longest has made room";
    EXPECT_EQ(streamMessageFrom(slow.back().number()), std::nullopt) << "too slow";
}

TEST_F(Answering, rubbishIsMetWithAnErrorOrSilence)
{
    const auto socket = connectedSocket(SOCK_DGRAM, m_proxy.port());
    auto badQuery = bytesOf({.name = "blocked.example", .id = 7});
    badQuery.pop_back();
    for (const auto& bytes : {Bytes{}, Bytes{1, 2, 3}, badQuery})
        sendBytes(socket.number(), bytes);
    const auto answer = Packet::from(datagramFrom(socket.number()).value());
    EXPECT_EQ(answer.id, 7);
    EXPECT_EQ(answer.code(), 1);
    const auto stream = connectedSocket(SOCK_STREAM, m_proxy.port());
    sendBytes(stream.number(), Bytes{0, 3, 1, 2, 3});
    EXPECT_FALSE(streamMessageFrom(stream.number())) << "closed: that was no message";
}

TEST_F(Answering, statusIsToldInClassChaos)
{
    EXPECT_TRUE(m_proxy.status("version").starts_with("stillgate-dnsproxy "));
    EXPECT_EQ(m_proxy.status("health"), "ok\n");
    EXPECT_EQ(m_proxy.count("names"), 4U);
    static_cast<void>(m_proxy.ask({.name = "blocked.example"}));
    static_cast<void>(m_proxy.ask({.name = "open.example"}));
    static_cast<void>(m_proxy.ask({.name = "OPEN.example"}));
    EXPECT_EQ(m_proxy.count("blocked"), 1U);
    EXPECT_EQ(m_proxy.count("forwarded"), 1U);
    EXPECT_EQ(m_proxy.count("cached"), 1U);
    EXPECT_EQ(m_proxy.ask({.name = "version.bind", .type = 16, .recordClass = 3}).code(), refused);
    EXPECT_EQ(m_proxy.ask({.name = "open.example", .type = 252}).code(), refused) << "AXFR";
    for (const auto* name : {"blocked.example", "open.example"})
        EXPECT_FALSE(m_proxy.log().contains(name)) << "who asked for what is nobody's business";
}

TEST_F(Answering, endsWithZeroAndSaysWhatIsWrongWithItsArguments)
{
    EXPECT_EQ(m_proxy.terminate(), 0);
    const std::string program = STILLGATE_DNSPROXY_PROGRAM;
    const auto statusOf = [&](const std::string& arguments) {
        return WEXITSTATUS(std::system((program + ' ' + arguments + " >/dev/null 2>&1").c_str()));
    };
    EXPECT_EQ(statusOf("--help"), 0);
    EXPECT_EQ(statusOf("--version"), 0);
    EXPECT_EQ(statusOf("--unknown"), 64);
    EXPECT_EQ(statusOf(""), 1) << "nothing to listen on";
}

} // namespace stillgate
