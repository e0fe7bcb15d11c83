#include "tests/dnsproxy/ProxyProcess.h"
#include "tests/dnsproxy/TestUpstream.h"

#include <gtest/gtest.h>

#include <set>

namespace stillgate
{

using namespace test;
using namespace std::chrono_literals;

namespace
{

constexpr int serverFailure = 2;
constexpr int nameError = 3;
constexpr int refused = 5;

TestUpstream::Behaviour silence()
{
    return [](const Bytes&, bool) { return std::vector<Bytes>{}; };
}

Bytes paddingOf(std::uint16_t size)
{
    Bytes option;
    dns::append16(option, 12);
    dns::append16(option, size);
    option.resize(option.size() + size);
    return option;
}

class Forwarding : public testing::Test
{
protected:
    Forwarding()
    {
        m_proxy.block("1000", {"blocked.example"});
        m_proxy.start();
    }

    TestUpstream m_upstream;
    TestUpstream m_second;
    ProxyProcess m_proxy{{.upstreams = {m_upstream.address(), m_second.address()}}};
};

} // namespace

TEST_F(Forwarding, changesNothingButTheID)
{
    const Ask ask{.name = "Open.Example",
        .type = 65'280,
        .id = 7,
        .flags = 0x0130,
        .edns = 1400,
        .ednsFlags = 0x8000,
        .ednsOptions = {0, 10, 0, 8, 1, 2, 3, 4, 5, 6, 7, 8}};
    const std::vector<PacketRecord> records{{.name = "Open.Example", .type = 65'280, .data = {1, 2, 3}},
        {.section = 'u', .name = "example", .type = 2, .data = {0}},
        {.section = 'd', .name = "", .type = 41, .ttl = 0x8000, .data = {0, 15, 0, 2, 0, 3}, .recordClass = 4096}};
    m_upstream.answer("open.example.", records, 0x85b0);
    const auto socket = connectedSocket(SOCK_DGRAM, m_proxy.port());
    sendBytes(socket.number(), bytesOf(ask));
    EXPECT_EQ(datagramFrom(socket.number()), answerTo(bytesOf(ask), records, 0x85b0));
    auto sent = m_upstream.queries("open.example.").at(0);
    dns::put16(sent, 0, ask.id);
    EXPECT_EQ(sent, bytesOf(ask));
}

TEST_F(Forwarding, aliasesIntoBlockedNamesDoNotExist)
{
    m_upstream.answer("alias.example.",
        {{.name = "alias.example", .type = 5, .data = nameBytes("middle.example")},
            {.name = "middle.example", .type = 5, .data = nameBytes("www.blocked.example")},
            {.name = "www.blocked.example"}});
    const std::vector<std::string> askedTwice{"alias.example", "ALIAS.example"};
    for (const auto& name : askedTwice) {
        const auto packet = m_proxy.ask({.name = name});
        EXPECT_EQ(packet.code(), nameError);
        EXPECT_EQ(packet.count('n'), 0U);
        EXPECT_EQ(packet.name, name + '.');
    }
    EXPECT_EQ(m_proxy.askByStream({.name = "alias.example"}).code(), nameError);
}

TEST_F(Forwarding, answersAreRememberedAsLongAsTheyHold)
{
    m_upstream.answer("open.example.", {{.name = "open.example", .ttl = 300}});
    EXPECT_EQ(m_proxy.ask({.name = "open.example"}).records.at(0).ttl, 300U);
    // Time passes, and the answer gets younger in every one that is given out of the cache.
    std::uint32_t last = 300;
    m_proxy.waitUntil([&] {
        last = m_proxy.ask({.name = "oPEN.example"}).records.at(0).ttl;
        return last < 300;
    });
    EXPECT_GE(last, 280U);
    EXPECT_EQ(m_upstream.queries("open.example.").size(), 1U);
}

TEST_F(Forwarding, sameQuestionsUnderWayAreAskedOnce)
{
    std::mutex gate;
    gate.lock();
    m_upstream.answer("open.example.", [&](const Bytes& query, bool) {
        const std::lock_guard lock{gate};
        return std::vector<Bytes>{answerTo(query, {{.name = "open.example", .ttl = 0}})};
    });
    const auto socket = connectedSocket(SOCK_DGRAM, m_proxy.port());
    for (std::uint16_t id = 1; id <= 100; ++id)
        sendBytes(socket.number(), bytesOf({.name = id % 2 == 0 ? "open.example" : "Open.eXample", .id = id}));
    m_proxy.waitUntil([&] { return m_proxy.count("forwarded") == 100; });
    gate.unlock();
    for (int left = 100; left > 0; --left) {
        const auto packet = Packet::from(datagramFrom(socket.number()).value());
        EXPECT_EQ(packet.name, packet.id % 2 == 0 ? "open.example." : "Open.eXample.");
        EXPECT_EQ(packet.count('n'), 1U);
    }
    EXPECT_EQ(m_upstream.queries("open.example.").size(), 2U) << "some 60 wait for the same one";
}

TEST_F(Forwarding, asManyAsWaitForAnAnswerAreKept)
{
    m_upstream.answer("", silence());
    m_second.answer("", silence());
    const auto socket = connectedSocket(SOCK_DGRAM, m_proxy.port());
    const auto query = bytesOf({.name = "open.example", .edns = 1232, .ednsOptions = paddingOf(3000)});
    constexpr std::uint64_t most = 10'000;
    for (std::uint64_t sent = 0; sent < most;) {
        for (int number = 0; number < 250; ++number, ++sent)
            sendBytes(socket.number(), query);
        m_proxy.waitUntil([&] { return m_proxy.count("forwarded") >= sent; });
    }
    sendBytes(socket.number(), bytesOf({.name = "another.example"}));
    const auto failed = Packet::from(datagramFrom(socket.number(), 2s).value());
    EXPECT_EQ(failed.name, "open.example.") << "those who have waited longest";
    EXPECT_EQ(failed.code(), serverFailure);
}

TEST_F(Forwarding, largeAnswersComeByStream)
{
    const PacketRecord large{.name = "large.example", .type = 16, .data = Bytes(4000, 'x')};
    m_upstream.answer("large.example.", [large](const Bytes& query, bool isStream) {
        return std::vector<Bytes>{isStream ? answerTo(query, {large}) : answerTo(query, {}, 0x8380)};
    });
    EXPECT_TRUE(m_proxy.ask({.name = "large.example", .type = 16}).isTruncated());
    EXPECT_EQ(m_proxy.askByStream({.name = "large.example", .type = 16}).records.at(0).data, large.data);
    const auto again = m_proxy.ask({.name = "large.example", .type = 16});
    EXPECT_TRUE(again.isTruncated()) << "from the cache, and still too large";
    EXPECT_EQ(again.count('n'), 0U);
    EXPECT_EQ(m_proxy.count("cached"), 1U);

    // As large as a message can be: an OPT record of our own has no room in it.
    const PacketRecord largest{.name = "l.example", .type = 16, .data = Bytes(65'535 - 12 - 15 - 21, 'x')};
    m_upstream.answer("l.example.", {largest});
    for (const std::optional<std::uint16_t> edns :
        {std::optional<std::uint16_t>{}, std::optional<std::uint16_t>{512}}) {
        for (int time = 0; time < 2; ++time)
            EXPECT_EQ(m_proxy.askByStream({.name = "l.example", .type = 16, .edns = edns}).records.at(0).data.size(),
                largest.data.size());
    }

    // An upstream that sends more than it may.
    m_upstream.answer("rude.example.", {{.name = "rude.example", .type = 16, .data = Bytes(1300, 'x')}});
    EXPECT_TRUE(m_proxy.ask({.name = "rude.example", .type = 16, .edns = 1232}).isTruncated());
    EXPECT_FALSE(m_proxy.ask({.name = "rude.example", .type = 16, .edns = 4096, .ednsFlags = 0x8000}).isTruncated());
}

TEST_F(Forwarding, forgedAnswersAreNone)
{
    m_upstream.answer("open.example.", [](const Bytes& query, bool) {
        const auto forged = [&](std::size_t at, std::uint8_t change) {
            auto answer = answerTo(query, {{.name = "open.example", .data = {6, 6, 6, 6}}});
            answer.at(at) ^= change;
            return answer;
        };
        auto otherName = answerTo(query, {{.name = "open.example", .data = {6, 6, 6, 6}}});
        otherName.at(13) = 'x';
        return std::vector<Bytes>{forged(0, 1), forged(1, 0x80), forged(2, 0x80), otherName, Bytes{1, 2, 3},
            forged(12 + 14 + 1, 2), answerTo(query, {{.name = "open.example"}})};
    });
    // From somewhere else nothing reaches a connected socket, whatever ID it guesses.
    EXPECT_EQ(m_proxy.ask({.name = "open.example"}).records.at(0).data, (Bytes{192, 0, 2, 1}));
}

TEST_F(Forwarding, portsAndIDsAreHardToGuess)
{
    constexpr int count = 300;
    std::set<std::uint16_t> ids;
    for (int number = 0; number < count; ++number) {
        const auto name = "n" + std::to_string(number) + ".example";
        static_cast<void>(m_proxy.ask({.name = name, .id = 1}));
        ids.insert(dns::number16(m_upstream.queries(name + '.').at(0), 0));
    }
    const auto senders = m_upstream.senders();
    EXPECT_GE(std::set(senders.begin(), senders.end()).size(), 50U);
    EXPECT_GE(ids.size(), 290U);
    EXPECT_GT(*ids.rbegin(), 50'000);
}

TEST_F(Forwarding, silentOrRefusingUpstreamsAreLeftForOthers)
{
    m_upstream.answer("refused.example.", {}, 0x8185);
    EXPECT_EQ(m_proxy.ask({.name = "refused.example"}).code(), 0) << "the other one knows";
    m_second.answer("refused.example.", {}, 0x8182);
    EXPECT_EQ(m_proxy.ask({.name = "refused.example", .type = 2}).code(), serverFailure) << "none does";
    m_second.answer("refused.example.", silence());
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(m_proxy.ask({.name = "refused.example", .type = 5}).code(), refused) << "better than nothing";
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 4s);

    m_upstream.answer("", silence());
    EXPECT_EQ(m_proxy.ask({.name = "a.example"}).code(), 0);
    EXPECT_EQ(m_upstream.queries("a.example.").size(), 1U);
    EXPECT_EQ(m_proxy.ask({.name = "b.example"}).code(), 0);
    EXPECT_TRUE(m_upstream.queries("b.example.").empty()) << "it comes last for a while";
    m_second.answer("", silence());
    EXPECT_EQ(m_proxy.ask({.name = "c.example"}).code(), serverFailure);
    EXPECT_EQ(m_proxy.count("failed"), 1U);
    EXPECT_TRUE(m_proxy.isBlocked("blocked.example")) << "whatever the upstreams do";
}

TEST_F(Forwarding, streamsGoToAnotherUpstreamToo)
{
    m_upstream.answer("refused.example.", {}, 0x8185);
    EXPECT_EQ(m_proxy.askByStream({.name = "refused.example"}).code(), 0) << "the other one knows";
    m_second.answer("refused.example.", silence());
    EXPECT_EQ(m_proxy.askByStream({.name = "refused.example", .type = 2}).code(), refused) << "better than nothing";

    // It closes the connection.
    m_upstream.answer("closed.example.", [](const Bytes& query, bool isStream) {
        return isStream ? std::vector<Bytes>{} : std::vector<Bytes>{answerTo(query, {})};
    });
    EXPECT_EQ(m_proxy.askByStream({.name = "closed.example"}).code(), 0);
    static_cast<void>(m_proxy.ask({.name = "closed.example", .type = 2}));
    EXPECT_EQ(m_upstream.queries("closed.example.").size(), 2U) << "over UDP it is as good as before";
}

TEST(Upstreams, thatAreAloneHaveTheWholeTimeOverStreamsToo)
{
    TestUpstream upstream;
    ProxyProcess proxy{{.upstreams = {upstream.address()}}};
    proxy.start();
    std::mutex gate;
    gate.lock();
    upstream.answer("slow.example.", [&](const Bytes& query, bool) {
        const std::lock_guard lock{gate};
        return std::vector<Bytes>{answerTo(query, {})};
    });
    const auto socket = connectedSocket(SOCK_STREAM, proxy.port());
    sendBytes(socket.number(), streamMessage(bytesOf({.name = "slow.example"})));
    proxy.waitUntil([&] { return proxy.count("forwarded") == 1; });
    EXPECT_FALSE(isReadable(socket.number(), 3s));
    gate.unlock();
    EXPECT_EQ(Packet::from(streamMessageFrom(socket.number()).value()).code(), 0);
}

TEST(Upstreams, whereNobodyListensAreLeftAtOnce)
{
    const TestUpstream upstream;
    const auto nobody = portOf(boundSocket(SOCK_DGRAM).number());
    ProxyProcess proxy{{.upstreams = {"127.0.0.1:" + std::to_string(nobody), upstream.address()}}};
    proxy.start();
    EXPECT_EQ(proxy.ask({.name = "open.example"}).code(), 0);
    EXPECT_EQ(proxy.askByStream({.name = "open.example", .type = 2}).code(), 0);
    EXPECT_EQ(upstream.queries("open.example.").size(), 2U);
}

TEST(Upstreams, followTheMachine)
{
    ProxyProcess proxy{{.resolvConf = "# none\n"}};
    proxy.block("1000", {"blocked.example"});
    proxy.start();
    EXPECT_EQ(proxy.status("health"), "no upstream\n");
    EXPECT_EQ(proxy.ask({.name = "open.example"}).code(), serverFailure);
    EXPECT_EQ(proxy.askByStream({.name = "open.example"}).code(), serverFailure);
    EXPECT_TRUE(proxy.isBlocked("blocked.example"));

    const auto file = proxy.folder() / "resolv.conf";
    putFile(file.string() + ".new", "nameserver 192.0.2.53\n");
    std::filesystem::rename(file.string() + ".new", file);
    proxy.waitUntil([&] { return proxy.status("health") == "ok\n"; });
    putFile(proxy.folder() / "elsewhere" / "resolv.conf", "# none\n");
    std::filesystem::remove(file);
    std::filesystem::create_symlink("elsewhere/resolv.conf", file);
    proxy.waitUntil([&] { return proxy.status("health") == "no upstream\n"; });
    putFile(proxy.folder() / "elsewhere" / "resolv.conf", "nameserver 192.0.2.53\n");
    proxy.waitUntil([&] { return proxy.status("health") == "ok\n"; });
}

} // namespace stillgate
