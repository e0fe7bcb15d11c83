#include "Names/UserSets.h"

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

    bool blocks(const std::string& name)
    {
        return m_sets->makeUnion()->blockedPart(DomainName::fromText(name).value()).has_value();
    }

    TemporaryFolder m_folder;
    CollectedLog m_log;
    std::unique_ptr<UserSets> m_sets;
};

} // namespace

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

TEST_F(Users, onlyGrowWhileTheyArePermanent)
{
    const auto mark = m_folder.path() / "group" / "1000.permanent";
    put("1000", R"({"domains":["a.example"]})");
    putFile(mark, "");
    fresh().store();
    put("1000", R"({"domains":["b.example"]})");
    EXPECT_TRUE(m_sets->refresh());
    EXPECT_TRUE(blocks("a.example") && blocks("b.example"));
    m_sets->store();
    put("1000", R"({"domains":[]})");
    fresh();
    EXPECT_TRUE(blocks("a.example") && blocks("b.example")) << "also over a restart";

    std::filesystem::remove(mark);
    EXPECT_TRUE(m_sets->refresh());
    EXPECT_FALSE(blocks("a.example") || blocks("b.example"));
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
    EXPECT_TRUE(m_sets->faults().empty());
    ::unlink(file("1000").c_str());
    EXPECT_FALSE(fresh().faults().empty()) << "nothing is in force, and something was";
    EXPECT_FALSE(blocks("a.example"));
    ::unlink(stored("1000").c_str());
    EXPECT_TRUE(fresh().faults().empty()) << "somebody new";
}

TEST_F(Users, loseNothingWithAStoredSetThatIsInForce)
{
    put("1000", R"({"domains":["a.example"]})");
    put("1001", R"({"domains":["b.example"]})");
    auto& sets = fresh();
    ASSERT_TRUE(sets.makeUnion());
    sets.store();
    putFile(stored("1000"), "damaged");
    put("1001", R"({"domains":["c.example"]})");
    EXPECT_TRUE(sets.refresh());
    EXPECT_TRUE(blocks("a.example") && blocks("c.example")) << "from the user's own file";
    sets.store();
    EXPECT_TRUE(sets.faults().empty());

    putFile(stored("1000"), "damaged");
    put("1000", "damaged");
    put("1001", R"({"domains":["d.example"]})");
    EXPECT_TRUE(sets.refresh());
    EXPECT_FALSE(sets.makeUnion()) << "better the old one than one without it";
    EXPECT_FALSE(sets.faults().empty());
    put("1000", R"({"domains":["a.example"]})");
    EXPECT_TRUE(sets.refresh());
    EXPECT_TRUE(blocks("a.example") && blocks("d.example"));
    EXPECT_TRUE(sets.faults().empty());
}

TEST_F(Users, keepADamagedKeyForWhoeverMendsIt)
{
    put("1000", R"({"domains":["a.example"]})");
    fresh().store();
    const auto key = m_folder.path() / "state" / "key";
    const auto keyBytes = fileBytes(key);
    const auto setBytes = fileBytes(stored("1000"));
    for (const bool isFolder : {false, true}) {
        ::unlink(key.c_str());
        if (isFolder)
            std::filesystem::create_directory(key);
        else
            putFile(key, keyBytes.substr(0, 3));
        fresh().store();
        EXPECT_TRUE(blocks("a.example")) << "from the file";
        EXPECT_GE(m_sets->faults().size(), 2U);
        EXPECT_EQ(fileBytes(stored("1000")), setBytes);
    }
    std::filesystem::remove(key);
    putFile(key, keyBytes);
    ::unlink(file("1000").c_str());
    fresh();
    EXPECT_TRUE(blocks("a.example"));
}

TEST_F(Users, areStoredOnceThatIsPossible)
{
    std::filesystem::create_symlink("elsewhere", m_folder.path() / "state");
    put("1000", R"({"domains":["a.example"]})");
    auto& sets = fresh();
    sets.store();
    EXPECT_TRUE(blocks("a.example") && sets.hasUnstored());
    EXPECT_EQ(sets.faults().size(), 1U);
    std::filesystem::create_directory(m_folder.path() / "elsewhere");
    sets.store();
    EXPECT_TRUE(sets.faults().empty() && !sets.hasUnstored());
    ::unlink(file("1000").c_str());
    fresh();
    EXPECT_TRUE(blocks("a.example"));
}

TEST_F(Users, haveRoomForSoManyNames)
{
    std::string full = R"({"domains":["a.a")";
    for (std::size_t count = 1; count < BlockedConfigParser::mostNames; ++count)
        full += ",\"a.a\"";
    put("1000", full + "]}");
    for (const auto* user : {"1001", "1002", "1003"}) {
        std::filesystem::create_directory(file(user).parent_path());
        std::filesystem::create_hard_link(file("1000"), file(user));
    }
    put("1004", R"({"domains":["b.example"]})");
    auto& sets = fresh();
    sets.store();
    EXPECT_EQ(sets.faults().size(), 1U) << "one too many in all";
    EXPECT_TRUE(blocks("a.a") && !blocks("b.example"));
    ::unlink(file("1000").c_str());
    put("1000", full + R"(,"a.a"]})");
    EXPECT_FALSE(sets.refresh());
    EXPECT_EQ(sets.faults().size(), 2U) << "one too many of a user's";
    put("1000", R"({"domains":[]})");
    EXPECT_TRUE(sets.refresh());
    EXPECT_TRUE(blocks("b.example")) << "there is room now";
    EXPECT_TRUE(sets.faults().empty());
}

} // namespace stillgate::dns
