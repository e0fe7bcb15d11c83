#include "Message/Header.h"
#include "Names/BlockedConfigFile.h"
#include "Names/Chains.h"
#include "Serving/CommandLine.h"
#include "Upstream/SystemUpstreams.h"
#include "tests/dnsproxy/DNSPacket.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace stillgate::dns
{

using namespace test;

namespace
{

DomainSet setOf(const std::vector<std::string>& names)
{
    DomainSet set{NameKey::random(), names.size()};
    for (const auto& name : names)
        set.insert(DomainName::fromText(name).value());
    return set;
}

bool has(const DomainSet& set, const std::string& name)
{
    return set.blockedPart(DomainName::fromText(name).value()).has_value();
}

Result<HashedNames> parsed(std::string_view text, std::size_t partSize)
{
    BlockedConfigParser parser{NameKey{{}}, text.size()};
    for (bool goesOn = true; goesOn && !text.empty(); text.remove_prefix(std::min(partSize, text.size())))
        goesOn = parser.read(text.substr(0, partSize));
    return parser.finish();
}

} // namespace

TEST(DomainSet, coversEverythingBelowAName)
{
    const auto set = setOf({"blocked.example", "com.blocked", "single"});
    for (const auto* name : {"blocked.example", "a.b.c.d.e.f.g.h.blocked.example", "x.single", "single"})
        EXPECT_TRUE(has(set, name)) << name;
    for (const auto* name : {"example", "notblocked.example", "blocked.example.com", "blocked", "com", "singles"})
        EXPECT_FALSE(has(set, name)) << name;
    EXPECT_EQ(set.blockedPart(DomainName::fromText("a.bc.blocked.example").value()), 5U);
    EXPECT_FALSE(set.blockedPart(DomainName{})) << "the root";
}

TEST(DomainSet, findsAMillionNamesAndNoOther)
{
    constexpr int count = 1'000'000;
    DomainSet set{NameKey::random(), count};
    for (int number = 0; number < 2 * count; ++number)
        set.insert(DomainName::fromText("n" + std::to_string(number / 2) + ".example").value());
    EXPECT_EQ(set.size(), count) << "twice the same is once";
    for (int number = 0; number < count; number += 7) {
        ASSERT_TRUE(has(set, "n" + std::to_string(number) + ".example"));
        ASSERT_FALSE(has(set, "m" + std::to_string(number) + ".example"));
    }
}

TEST(BlockedConfig, isReadInPartsOfAnySize)
{
    constexpr std::string_view text =
        R"( {"version":[{"domains":["no.example"]}],"domains":["A.example","b.EXAMPLE.","a.\u0065xample","http://x","",)"
        R"("bücher.example","a b"," \t\nb.example\r\n","com","localhost."],"categories":[],"more":{"x":[1.5,null,true,"\ud83d\ude00"]}} )";
    for (const std::size_t size : {1, 2, 3, 7, 64, 1000}) {
        const auto names = parsed(text, size);
        ASSERT_TRUE(names) << size << ": " << names.error().description();
        ASSERT_EQ(names->hashes.size(), 4U) << size;
        EXPECT_EQ(names->hashes[0], names->hashes[2]) << size;
        EXPECT_NE(names->hashes[0], names->hashes[1]) << size;
        EXPECT_EQ(names->hashes[1], names->hashes[3]) << size << ": without the blanks";
        EXPECT_EQ(names->skipped, 6U) << size << ": all top-level names among them";
    }
    EXPECT_TRUE(parsed(R"({"domains":[]})", 1000));
    const auto longEntry = R"({"domains":[")" + std::string(100'000, 'a') + R"(","b.c"]})";
    EXPECT_EQ(parsed(longEntry, 1000)->hashes.size(), 1U);
}

TEST(BlockedConfig, thatIsNotWholeIsNone)
{
    for (const auto* text : {"", "{", "{}", "[]", "null", R"({"categories":[]})", R"({"domains":["a")",
             R"({"domains":["a"])", R"({"domains":"a"})", R"({"domains":{"a":1}})", R"({"domains":[1]})",
             R"({"domains":[null]})", R"({"domains":[["a"]]})", R"({"domains":null})", R"({"domains":["a"]}x)",
             R"({"domains":["a"]}{})", R"([{"domains":["a"]}])", "{\"domains\":[\"a\xff\"]}"}) {
        for (const std::size_t size : {1, 1000})
            EXPECT_FALSE(parsed(text, size)) << text;
    }
    std::string deep = R"({"x":)" + std::string(100'000, '[');
    EXPECT_FALSE(parsed(deep, 1000));
}

TEST(Chains, leadIntoABlockedNameByAliasesAlone)
{
    const auto blocked = setOf({"blocked.example"});
    const auto leads = [&](std::uint16_t type, Bytes data, char section = 'n') {
        const auto query = bytesOf({.name = "a.example"});
        const auto answer = answerTo(query,
            {{.name = "a.example", .type = 5, .data = nameBytes("b.example")},
                {.section = section, .name = "b.example", .type = type, .data = std::move(data)}});
        return leadsIntoBlocked(answer, query.size(), blocked);
    };
    const auto after = [](Bytes priority, const std::string& name) {
        append(priority, nameBytes(name));
        return priority;
    };
    EXPECT_TRUE(leads(type::cname, nameBytes("X.Blocked.example")));
    EXPECT_TRUE(leads(type::dname, nameBytes("blocked.example")));
    EXPECT_TRUE(leads(type::https, after({0, 0}, "blocked.example")));
    EXPECT_TRUE(leads(type::svcb, after({0, 0}, "www.blocked.example")));
    EXPECT_TRUE(leads(type::cname, {5, 'a'})) << "who knows where that leads";
    EXPECT_FALSE(leads(type::https, after({0, 1}, "blocked.example"))) << "another server of the same site";
    EXPECT_FALSE(leads(type::cname, nameBytes("notblocked.example")));
    EXPECT_FALSE(leads(type::cname, nameBytes("blocked.example"), 'd')) << "not in the answer";
    EXPECT_FALSE(leads(type::txt, nameBytes("blocked.example")));
}

TEST(SystemUpstreams, areThoseBehindAStubAndNeverThisProgram)
{
    const TemporaryFolder folder;
    const ResolverFiles files{.resolvConf = folder.path() / "resolv.conf", .behindStub = {folder.path() / "stub"}};
    const auto find = [&](std::string_view main, std::string_view stub) {
        putFile(files.resolvConf, main);
        putFile(files.behindStub.front(), stub);
        std::string found;
        for (const auto& endpoint : findUpstreams(files, {Endpoint{boost::asio::ip::make_address("127.0.0.9"), 53}}))
            found += endpoint.address().to_string() + ' ';
        return found;
    };
    const auto* stub = "nameserver 192.0.2.7\n";
    EXPECT_EQ(find("# nameserver 9.9.9.9\nnameserver 192.0.2.1\n nameserver\t2001:db8::1 # x\noptions "
                   "edns0\nnameserver 192.0.2.1",
                  stub),
        "192.0.2.1 2001:db8::1 ");
    EXPECT_EQ(find("nameserver 127.0.0.53\n", stub), "192.0.2.7 ");
    EXPECT_EQ(find("nameserver 127.0.0.53\nnameserver 127.0.0.9\n", "nameserver 127.0.0.54\n"), "127.0.0.53 ");
    EXPECT_EQ(find("nameserver 127.0.0.9\nnameserver 0.0.0.0\nnameservers 192.0.2.1\nnameserver name\n", ""), "");
}

TEST(CommandLine, isUnderstoodOrToldWhatIsWrong)
{
    const auto parse = [](std::vector<const char*> words) { return parseCommandLine(words, "/state:/other"); };
    const auto line = parse({"--listen", "[::1]:5300", "--listen", "127.0.0.1:0", "--upstream", "192.0.2.1",
        "--upstream", "2001:db8::1", "--upstream", "[2001:db8::1]:54", "--upstream", "192.0.2.1:55", "--group", "/g"});
    ASSERT_TRUE(line);
    EXPECT_EQ(line->state, "/state");
    EXPECT_EQ(line->listen.size(), 2U);
    std::vector<std::uint16_t> ports;
    for (const auto& upstream : line->upstreams)
        ports.push_back(upstream.port());
    EXPECT_EQ(ports, (std::vector<std::uint16_t>{53, 53, 54, 55}));
    for (const auto& words :
        std::vector<std::vector<const char*>>{{"--listen", "127.0.0.1"}, {"--listen"}, {"--group", ""}, {"--what", "x"},
            {"--what"}, {"file"}, {"--upstream", "name:53"}, {"--upstream", "192.0.2.1:70000"}, {"--upstream", "[::1"},
            {"--upstream", "192.0.2.1:"}, {"--upstream", "[::1]53"}})
        EXPECT_FALSE(parse(words)) << words.front();
}

} // namespace stillgate::dns
