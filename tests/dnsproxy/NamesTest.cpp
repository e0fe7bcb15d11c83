#include "Message/Header.h"
#include "Names/Chains.h"
#include "Names/UserSets.h"
#include "Serving/CommandLine.h"
#include "Upstream/SystemUpstreams.h"
#include "tests/dnsproxy/DNSPacket.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>

namespace stillgate::dns
{

using namespace test;

namespace
{

class CollectedLog final : public Log
{
public:
    void write(std::string_view line) override { lines.append(line).append("\n"); }

    std::string lines;
};

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
        R"("bücher.example","a b"],"categories":[],"more":{"x":[1.5,null,true,"\ud83d\ude00"]}} )";
    for (const std::size_t size : {1, 2, 3, 7, 64, 1000}) {
        const auto names = parsed(text, size);
        ASSERT_TRUE(names) << size << ": " << names.error().description();
        ASSERT_EQ(names->hashes.size(), 3U) << size;
        EXPECT_EQ(names->hashes[0], names->hashes[2]) << size;
        EXPECT_NE(names->hashes[0], names->hashes[1]) << size;
        EXPECT_EQ(names->skipped, 4U) << size;
    }
    EXPECT_TRUE(parsed(R"({"domains":[]})", 1000));
    const auto longEntry = R"({"domains":[")" + std::string(100'000, 'a') + R"(","b"]})";
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

class Users : public testing::Test
{
protected:
    void put(const std::string& user, std::string_view text) { putFile(file(user), text); }

    [[nodiscard]] std::filesystem::path file(const std::string& user) const
    {
        return m_folder.path() / "group" / user / "blocked-config.json";
    }

    [[nodiscard]] std::filesystem::path stored(const std::string& user) const
    {
        return m_folder.path() / "state" / (user + ".set");
    }

    /// Another process, at this moment.
    UserSets& fresh()
    {
        m_sets = std::make_unique<UserSets>(m_folder.path() / "group", m_folder.path() / "state", m_log);
        static_cast<void>(m_sets->refresh());
        return *m_sets;
    }

    bool blocks(const std::string& name) { return has(*m_sets->makeUnion(), name); }

    TemporaryFolder m_folder;
    CollectedLog m_log;
    std::unique_ptr<UserSets> m_sets;
};

TEST_F(Users, areOneUnionAndEachKeepsTheLastGoodSet)
{
    put("1000", R"({"domains":["a.example"]})");
    put("1001", R"({"domains":["b.example","a.example"]})");
    put("someone", R"({"domains":["c.example"]})");
    auto& sets = fresh();
    EXPECT_TRUE(blocks("a.example") && blocks("b.example"));
    EXPECT_FALSE(blocks("c.example")) << "a folder that is no user's";
    EXPECT_TRUE(blocks("www.use-application-dns.net")) << "always";
    EXPECT_EQ(sets.makeUnion()->size(), 3U);
    sets.store();
    EXPECT_TRUE(sets.faults().empty());
    EXPECT_FALSE(sets.refresh()) << "nothing has changed";

    put("1000", R"({"domains":["a.exam)");
    EXPECT_FALSE(sets.refresh());
    EXPECT_EQ(sets.faults().size(), 1U);
    EXPECT_TRUE(blocks("a.example"));
    put("1001", R"({"domains":[]})");
    EXPECT_TRUE(sets.refresh());
    EXPECT_TRUE(blocks("a.example") && !blocks("b.example"));

    std::filesystem::remove_all(m_folder.path() / "group" / "1000");
    EXPECT_TRUE(sets.refresh());
    EXPECT_FALSE(blocks("a.example"));
    EXPECT_FALSE(std::filesystem::exists(stored("1000")));
}

TEST_F(Users, keepTheLastGoodSetOverARestart)
{
    const std::vector<std::pair<const char*, std::function<void(const std::string&)>>> damages{
        {"removed", [](const auto& path) { ::unlink(path.c_str()); }},
        {"half", [](const auto& path) { putFile(path, R"({"domains":["a.e)"); }},
        {"empty", [](const auto& path) { putFile(path, ""); }},
        {"a pipe", [](const auto& path) { ::unlink(path.c_str()), ::mkfifo(path.c_str(), 0600); }},
        {"a folder", [](const auto& path) { ::unlink(path.c_str()), ::mkdir(path.c_str(), 0700); }},
        {"a link to a good one",
            [](const auto& path) {
                putFile(path + "2", R"({"domains":[]})"), ::unlink(path.c_str()),
                    std::filesystem::create_symlink(path + "2", path);
            }},
        {"too large", [](const auto& path) { std::filesystem::resize_file(path, largestConfig + 1); }},
    };
    int user = 2000;
    for (const auto& [damage, doDamage] : damages) {
        const auto name = std::to_string(user++);
        put(name, R"({"domains":["n)" + name + R"(.example"]})");
        fresh().store();
        doDamage(file(name));
        EXPECT_FALSE(fresh().faults().empty()) << damage;
        EXPECT_TRUE(blocks("n" + name + ".example")) << damage;
    }
    EXPECT_EQ(m_sets->makeUnion()->size(), damages.size() + 1) << "one user's damage is nobody else's";
}

TEST_F(Users, areNotParsedAgainIfTheirFilesAreTheSame)
{
    put("1000", R"({"domains":["a.example"]})");
    const timespec longAgo{.tv_sec = 1, .tv_nsec = 0};
    ::utimensat(AT_FDCWD, file("1000").c_str(), std::array{longAgo, longAgo}.data(), 0);
    fresh().store();
    // The same size and time of modification: the time of change tells.
    put("1000", R"({"domains":["b.example"]})");
    ::utimensat(AT_FDCWD, file("1000").c_str(), std::array{longAgo, longAgo}.data(), 0);
    fresh();
    EXPECT_TRUE(blocks("b.example") && !blocks("a.example"));
}

TEST_F(Users, startAnewWithDamagedStoredSets)
{
    put("1000", R"({"domains":["a.example"]})");
    fresh().store();
    auto bytes = fileBytes(stored("1000"));
    bytes.back() = static_cast<char>(bytes.back() ^ 1);
    putFile(stored("1000"), bytes);
    fresh();
    EXPECT_TRUE(blocks("a.example")) << "from the file";
    std::filesystem::remove_all(m_folder.path() / "state");
    putFile(m_folder.path() / "state", "not a folder");
    fresh().store();
    EXPECT_TRUE(blocks("a.example"));
    EXPECT_EQ(m_sets->faults().size(), 1U) << "the set isn't stored";
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
