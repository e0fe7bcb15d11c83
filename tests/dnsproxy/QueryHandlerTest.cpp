#include "Serving/QueryHandler.h"

#include "tests/dnsproxy/DNSPacket.h"

#include <gtest/gtest.h>

namespace stillgate::dns
{

using namespace test;

namespace
{

class CollectedAnswers final : public AnswerSink
{
public:
    void send(View answer, const Endpoint&) override { answers.emplace_back(answer.begin(), answer.end()); }

    std::vector<Bytes> answers;
};

class Handler : public testing::Test
{
protected:
    Handler() { m_status.hasUpstream = true; }

    void ask(const Bytes& query) { EXPECT_TRUE(m_handler.take(query, {.sink = m_sink, .address = {}})); }

    /// As a forwarder gives it, to all whose queries it has.
    void answer(const Bytes& answer, bool isCurrent = true)
    {
        m_handler.takeAnswer(answer, std::exchange(m_waiting, {}), isCurrent);
    }

    Status m_status;
    std::vector<WaitingAsker> m_waiting;
    std::shared_ptr<CollectedAnswers> m_sink = std::make_shared<CollectedAnswers>();
    QueryHandler m_handler{
        m_status, [this](const Query& query, std::uint64_t, const Asker& asker) {
            const bool isFirst = m_waiting.empty();
            m_waiting.push_back({.asker = asker,
                .query = isFirst ? Bytes{query.message.begin(), query.message.end()} : query.withoutOptions()});
        }};
};

Bytes cookieOf(std::uint8_t byte)
{
    Bytes option{0, 10, 0, 8};
    option.resize(12, byte);
    return option;
}

} // namespace

TEST_F(Handler, remembersNoAnswerOfFormerUpstreams)
{
    const auto query = bytesOf({.name = "open.example", .edns = 1232});
    const PacketRecord opt{.section = 'd', .type = 41, .ttl = 0x8000, .data = cookieOf('1'), .recordClass = 4096};
    for (const bool isCurrent : {false, true}) {
        ask(query);
        ASSERT_EQ(m_waiting.size(), 1U) << "nothing is remembered yet";
        answer(answerTo(query, {{.name = "open.example"}, opt}, 0x85a0), isCurrent);
    }
    ask(bytesOf({.name = "oPEN.example", .id = 77, .edns = 700}));
    EXPECT_TRUE(m_waiting.empty());
    const auto packet = Packet::from(m_sink->answers.at(2));
    EXPECT_EQ(packet.id, 77);
    EXPECT_EQ(packet.name, "oPEN.example.");
    EXPECT_EQ(packet.flags, 0x81a0) << "no authority any more";
    ASSERT_NE(packet.find(41), nullptr);
    EXPECT_TRUE(packet.find(41)->data.empty()) << "somebody else's cookie";
}

TEST_F(Handler, givesNobodyWhatIsAnotherOnes)
{
    const PacketRecord cookie{.section = 'd', .type = 41, .ttl = 0x8000, .data = cookieOf('1'), .recordClass = 4096};
    const PacketRecord address{.name = "open.example"};
    const PacketRecord behind{.section = 'd', .name = "behind"};
    const std::vector<std::pair<std::vector<PacketRecord>, std::uint16_t>> answers{
        {{address, cookie}, 0x8180}, {{cookie}, 0x8380}, // truncated
        {{address, cookie, behind}, 0x8180},             // no telling what is whose
    };
    for (const auto& [records, flags] : answers) {
        m_sink->answers.clear();
        m_handler.forgetAnswers();
        Ask first{.name = "open.example", .id = 1, .edns = 1232, .ednsFlags = 0x8000, .ednsOptions = cookieOf('1')};
        ask(bytesOf(first));
        ask(bytesOf({.name = "Open.example", .id = 2, .edns = 700, .ednsFlags = 0x8000, .ednsOptions = cookieOf('2')}));
        answer(answerTo(bytesOf(first), records, flags));
        ASSERT_EQ(m_sink->answers.size(), 2U);
        for (const auto& bytes : m_sink->answers) {
            const auto packet = Packet::from(bytes);
            const auto* opt = packet.find(41);
            ASSERT_NE(opt, nullptr);
            EXPECT_EQ(opt->data, packet.id == 1 ? cookieOf('1') : Bytes{});
            EXPECT_EQ(packet.name, packet.id == 1 ? "open.example." : "Open.example.");
            const bool isWhole = packet.find(1) != nullptr;
            EXPECT_TRUE(isWhole || packet.isTruncated()) << "or nobody would ask again";
        }
    }
}

} // namespace stillgate::dns
