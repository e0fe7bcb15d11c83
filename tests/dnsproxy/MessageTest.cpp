#include "Message/Answers.h"
#include "Serving/AnswerCache.h"
#include "tests/dnsproxy/DNSPacket.h"

#include <gtest/gtest.h>

namespace stillgate::dns
{

using namespace test;
using namespace std::chrono_literals;

namespace
{

constexpr std::uint16_t aliasType = 5;
constexpr std::uint16_t soaType = 6;
constexpr std::uint16_t optType = 41;

Query queryOf(const Bytes& bytes)
{
    return Query::parse(bytes).value();
}

std::optional<DomainName> nameIn(const Bytes& message, std::size_t at)
{
    DomainName name;
    return name.read(message, at) ? std::optional{name} : std::nullopt;
}

} // namespace

TEST(DomainName, isReadWithItsPointersAndNeverInCircles)
{
    const Bytes message{3, 'W', 'w', 'w', 0, 1, 'a', 0xc0, 0, 0xc0, 5, 0xc0, 11, 0xc0, 15, 0xc0, 13, 64, 'x', 5, 'a'};
    EXPECT_EQ(nameIn(message, 0), DomainName::fromText("www"));
    EXPECT_EQ(nameIn(message, 5), DomainName::fromText("A.wWw."));
    EXPECT_EQ(nameIn(message, 9), DomainName::fromText("a.www"));
    for (const std::size_t broken : {11, 13, 15, 17, 19, 20, 21, 1000})
        EXPECT_FALSE(nameIn(message, broken))
            << broken << ": to itself, ahead, to each other, too long, cut off, outside";

    Bytes long64;
    for (int label = 0; label < 64; ++label)
        append(long64, Bytes{3, 'a', 'b', 'c'});
    long64.push_back(0);
    EXPECT_FALSE(nameIn(long64, 0)) << "257 bytes";
    EXPECT_TRUE(nameIn(long64, 4)) << "253 bytes";
}

TEST(DomainName, fromTextIsWhatCanBeAsked)
{
    for (const auto* text : {"a", "A.B", "_dmarc.example.com.", "xn--bcher-kva.example", "1.2.3.4", "-a-.b"})
        EXPECT_TRUE(DomainName::fromText(text)) << text;
    const std::string longest(63, 'a');
    EXPECT_TRUE(DomainName::fromText(longest + '.' + longest + '.' + longest + '.' + std::string(61, 'a')));
    EXPECT_FALSE(DomainName::fromText(longest + '.' + longest + '.' + longest + '.' + std::string(62, 'a')));
    for (const auto& text : {std::string{}, std::string{"."}, std::string{"a..b"}, std::string{".a"},
             std::string{"a.."}, std::string{"a b"}, std::string{"bücher.example"}, std::string{"http://a"},
             std::string{"a\0b", 3}, std::string{"*.a"}, longest + 'a'})
        EXPECT_FALSE(DomainName::fromText(text)) << text;
}

TEST(Query, faultsAreAnsweredOrMetWithSilence)
{
    const auto good = bytesOf({.name = "example.com", .edns = 1232});
    ASSERT_TRUE(Query::parse(good));
    const auto changed = [&](std::size_t at, std::uint8_t value) {
        auto bytes = good;
        bytes.at(at) = value;
        return bytes;
    };
    const auto cut = [&](std::size_t size) { return Bytes{good.begin(), good.begin() + static_cast<int>(size)}; };
    auto twoOPTs = changed(11, 2);
    append(twoOPTs, View{good}.last(11));
    auto more = good;
    more.push_back(0);
    const std::vector<std::pair<Bytes, Query::Fault>> cases{
        {{}, std::nullopt},
        {cut(11), std::nullopt},
        {changed(2, 0x81), std::nullopt}, // an answer: two of us would answer each other for ever
        {changed(2, 0x29), ResponseCode::notImplemented},
        {changed(5, 0), ResponseCode::formatError},
        {changed(5, 2), ResponseCode::formatError},
        {changed(12, 0xc0), ResponseCode::formatError},
        {changed(12, 60), ResponseCode::formatError},
        {changed(7, 1), ResponseCode::formatError},
        {cut(12), ResponseCode::formatError},
        {cut(good.size() - 1), ResponseCode::formatError},
        {more, ResponseCode::formatError},
        {twoOPTs, ResponseCode::formatError},
        {bytesOf({.name = "a", .edns = 512, .ednsOptions = {0, 10, 0, 9, 1}}), ResponseCode::formatError},
    };
    for (const auto& [bytes, fault] : cases) {
        const auto query = Query::parse(bytes);
        ASSERT_FALSE(query) << bytes.size();
        EXPECT_EQ(query.error(), fault) << bytes.size();
    }
}

TEST(Query, isSharedOnlyWhereTheAnswerIsForAll)
{
    const auto with = [](Bytes options) {
        return bytesOf({.name = "a", .edns = 512, .ednsOptions = std::move(options)});
    };
    EXPECT_TRUE(queryOf(with({})).isShareable());
    EXPECT_TRUE(queryOf(with({0, 10, 0, 1, 7, 0, 12, 0, 0})).isShareable()) << "cookie and padding";
    EXPECT_FALSE(queryOf(with({0, 8, 0, 1, 7})).isShareable()) << "the client's network";

    auto isSigned = bytesOf({.name = "a"});
    isSigned.at(11) = 1;
    append(isSigned, Bytes{0, 0, 250, 0, 255, 0, 0, 0, 0, 0, 0});
    EXPECT_FALSE(queryOf(isSigned).isShareable());

    EXPECT_NE(queryOf(bytesOf({.name = "a"})).variant(), queryOf(bytesOf({.name = "a", .flags = 0x0110})).variant());
    EXPECT_NE(queryOf(with({})).variant(), queryOf(bytesOf({.name = "a", .edns = 512, .ednsFlags = 0x8000})).variant());
    EXPECT_NE(queryOf(with({})).variant(), queryOf(bytesOf({.name = "a"})).variant());
}

TEST(SharedAnswer, holdsAsLongAsItsRecordsOrItsZoneAllow)
{
    const auto query = bytesOf({.name = "a.example"});
    const PacketRecord zone{.section = 'u', .name = "example", .type = soaType, .ttl = 900, .data = soaData(60)};
    const auto lifetime = [&](const std::vector<PacketRecord>& records, std::uint16_t flags) {
        const auto shared = SharedAnswer::from(answerTo(query, records, flags));
        return shared ? static_cast<int>(shared->lifetime()) : -1;
    };
    EXPECT_EQ(lifetime({{.name = "a.example", .ttl = 86'400}}, 0x8180), 3600);
    EXPECT_EQ(lifetime({{.name = "a.example", .ttl = 0x8000'0001}}, 0x8180), 0);
    EXPECT_EQ(lifetime({zone}, 0x8180), 60);
    EXPECT_EQ(lifetime({zone}, 0x8183), 60);
    EXPECT_EQ(lifetime({{.name = "a.example", .type = aliasType, .data = {0}}, zone}, 0x8183), 60);
    EXPECT_EQ(lifetime({}, 0x8183), 0) << "nobody says for how long";
    EXPECT_EQ(lifetime({{.name = "a.example"}}, 0x8182), 0) << "SERVFAIL";
    EXPECT_EQ(lifetime({{.name = "a.example"}}, 0x8380), -1) << "truncated";
    const auto large = [](std::size_t size) {
        return PacketRecord{.name = "", .type = 16, .data = Bytes(size - 12 - 15 - 11)};
    };
    EXPECT_EQ(lifetime({large(65'535 - 11)}, 0x8180), 300);
    EXPECT_EQ(lifetime({large(65'535 - 10)}, 0x8180), -1) << "no room for an OPT record";
    EXPECT_EQ(
        lifetime({{.section = 'd', .name = "", .type = optType, .ttl = 0, .data = {}}, {.section = 'd', .name = "b"}},
            0x8180),
        -1)
        << "something behind the OPT record";
}

TEST(AnswerCache, keepsWhatHoldsAndWhatIsAskedFor)
{
    AnswerCache cache;
    const AnswerCache::Time start{};
    const auto store = [&](const std::string& name, std::uint64_t key) {
        const auto query = bytesOf({.name = name});
        cache.store(queryOf(query), key, *SharedAnswer::from(answerTo(query, {{.name = name, .ttl = 30}})), start);
    };
    const auto has = [&](const std::string& name, std::uint64_t key, std::chrono::seconds age = 0s) {
        const auto query = bytesOf({.name = name});
        Bytes out;
        return cache.append(out, queryOf(query), key, start + age) && Packet::from(out).name == name + '.';
    };
    store("a.example", 1);
    EXPECT_TRUE(has("a.example", 1, 29s));
    EXPECT_FALSE(has("b.example", 1)) << "the same number by chance";
    EXPECT_FALSE(has("a.example", 1, 30s));
    EXPECT_EQ(cache.size(), 0U);

    store("first.example", 1);
    store("second.example", 2);
    for (std::uint64_t key = 3; key <= AnswerCache::mostAnswers; ++key) {
        store("n" + std::to_string(key) + ".example", key);
        if (key % 1000 == 0) {
            EXPECT_TRUE(has("first.example", 1));
        }
    }
    store("last.example", AnswerCache::mostAnswers + 1);
    EXPECT_TRUE(has("first.example", 1)) << "asked for now and then";
    EXPECT_FALSE(has("second.example", 2));
    EXPECT_EQ(cache.size(), AnswerCache::mostAnswers);
    cache.clear();
    EXPECT_FALSE(has("first.example", 1));
}

TEST(AnswerCache, staysSmallWithLargeAnswers)
{
    AnswerCache cache;
    const auto query = bytesOf({.name = "a.example"});
    const auto large = answerTo(query, {{.name = "a.example", .type = 16, .data = Bytes(60'000)}});
    for (std::uint64_t key = 0; key < 1000; ++key)
        cache.store(queryOf(query), key, *SharedAnswer::from(large), {});
    EXPECT_LE(cache.size() * 60'000, AnswerCache::mostBytes);
    EXPECT_GT(cache.size(), 50U);
}

} // namespace stillgate::dns
