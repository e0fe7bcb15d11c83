#include "Blocking/HostsEntries.h"
#include "Platform/Linux/LinuxChildProcess.h"
#include "Platform/Linux/LinuxFileManager.h"
#include "Platform/Linux/ScriptHostsFileWriter.h"
#include "Platform/Memory/MemoryHost.h"
#include "tests/support/Await.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <sys/stat.h>

namespace stillgate
{

using namespace test;
namespace fs = std::filesystem;

namespace
{

/// Hands the script what a test wants it to get.
class TamperingChildProcess final : public ChildProcess
{
public:
    explicit TamperingChildProcess(std::function<void(Command&)> tamper)
        : m_tamper(std::move(tamper))
    {}

    Task<Result<int>> run(Command command) override
    {
        m_tamper(command);
        return m_real.run(std::move(command));
    }

private:
    std::function<void(Command&)> m_tamper;
    LinuxChildProcess m_real;
};

} // namespace

class HostsFileScript : public testing::Test
{
protected:
    bool replace(const std::string& block)
    {
        return await(
            ScriptHostsFileWriter{m_hosts, m_files, m_children, m_host}.replaceBlock(block, {}, Permanence::flexible))
            .has_value();
    }

    /// Writes with a script that gets something else than it should; the outcome is as for `replace`.
    bool replaceTampered(const std::function<void(Command&)>& tamper)
    {
        TamperingChildProcess children{tamper};
        return await(
            ScriptHostsFileWriter{m_hosts, m_files, children, m_host}.replaceBlock(m_block, {}, Permanence::flexible))
            .has_value();
    }

    [[nodiscard]] struct stat status() const
    {
        struct stat result{};
        EXPECT_EQ(::stat(m_hosts.c_str(), &result), 0);
        return result;
    }

    [[nodiscard]] std::vector<std::string> folder() const
    {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator{m_hosts.parent_path()})
            names.push_back(entry.path().filename());
        return names;
    }

    TemporaryFolder m_folder;
    fs::path m_hosts = m_folder.path() / "etc 'x'" / "hosts";
    LinuxFileManager m_files;
    LinuxChildProcess m_children;
    MemoryHost m_host;
    std::string m_block = generateHostsEntries({"a.example"});
};

TEST_F(HostsFileScript, writesAndRemovesToTheByteWithModeAndOwnerKept)
{
    const std::string original("127.0.0.1 localhost\r\n# caf\xe9 \0$(x) no final line feed", 49);
    putFile(m_hosts, original);
    ::chmod(m_hosts.c_str(), 0604);
    [[maybe_unused]] const auto changed = ::chown(m_hosts.c_str(), 12, 34); // as root only
    const auto before = status();

    EXPECT_TRUE(replace(m_block));
    EXPECT_EQ(fileBytes(m_hosts), original + m_block);
    EXPECT_NE(status().st_ino, before.st_ino) << "replaced, not rewritten";
    EXPECT_EQ(status().st_mode, before.st_mode);
    EXPECT_EQ(status().st_uid, before.st_uid);
    EXPECT_EQ(status().st_gid, before.st_gid);

    EXPECT_TRUE(replace(""));
    EXPECT_EQ(fileBytes(m_hosts), original);
    EXPECT_THAT(folder(), testing::ElementsAre("hosts"));
}

TEST_F(HostsFileScript, takesBlocksLargerThanAnArgumentMayBe)
{
    std::vector<std::string> domains;
    for (int i = 0; i < 20'000; ++i)
        domains.push_back(std::to_string(i) + ".example");
    m_block = generateHostsEntries(domains);
    ASSERT_GT(m_block.size(), 3'000'000U);
    putFile(m_hosts, "127.0.0.1 localhost\n");
    EXPECT_TRUE(replace(m_block));
    EXPECT_TRUE(fileBytes(m_hosts) == "127.0.0.1 localhost\n" + m_block);
}

TEST_F(HostsFileScript, missingFileIsMadeReadableForEveryone)
{
    fs::create_directories(m_hosts.parent_path());
    EXPECT_TRUE(replace(m_block));
    EXPECT_EQ(fileBytes(m_hosts), m_block);
    EXPECT_EQ(status().st_mode & 07777, 0644U);
}

TEST_F(HostsFileScript, followsALink)
{
    putFile(m_folder.path() / "real", "127.0.0.1 localhost\n");
    fs::create_directories(m_hosts.parent_path());
    fs::create_symlink("../real", m_hosts);
    EXPECT_TRUE(replace(m_block));
    EXPECT_TRUE(fs::is_symlink(m_hosts));
    EXPECT_EQ(fileBytes(m_folder.path() / "real"), "127.0.0.1 localhost\n" + m_block);
}

TEST_F(HostsFileScript, whoeverSendsTheTextMayDieAnywhere)
{
    const std::string original = "127.0.0.1 localhost\n";
    putFile(m_hosts, original);
    for (const std::size_t sent : {std::size_t{0}, std::size_t{10}, original.size() + m_block.size() - 1}) {
        EXPECT_FALSE(replaceTampered([&](Command& command) { command.standardInput.resize(sent); }));
        EXPECT_EQ(fileBytes(m_hosts), original);
        EXPECT_THAT(folder(), testing::ElementsAre("hosts"));
    }
}

TEST_F(HostsFileScript, changeBySomebodyElseMeanwhileIsNotLost)
{
    putFile(m_hosts, "127.0.0.1 localhost\n");
    bool isFirst = true;
    EXPECT_TRUE(replaceTampered([&](Command&) {
        if (std::exchange(isFirst, false))
            putFile(m_hosts, "127.0.0.1 localhost\n10.0.0.1 nas\n");
    }));
    EXPECT_EQ(fileBytes(m_hosts), "127.0.0.1 localhost\n10.0.0.1 nas\n" + m_block);

    fs::remove(m_hosts);
    isFirst = true;
    EXPECT_TRUE(replaceTampered([&](Command&) {
        if (std::exchange(isFirst, false))
            putFile(m_hosts, "10.0.0.1 nas\n");
    })) << "a file that appears meanwhile";
    EXPECT_EQ(fileBytes(m_hosts), "10.0.0.1 nas\n" + m_block);
}

TEST_F(HostsFileScript, scriptThatIsKilledLeavesTheOldFile)
{
    putFile(m_hosts, "127.0.0.1 localhost\n");
    EXPECT_FALSE(replaceTampered([](Command& command) {
        command.arguments.at(1).insert(command.arguments.at(1).find("cat >\"$new\""), "kill -9 $$\n");
    }));
    EXPECT_EQ(fileBytes(m_hosts), "127.0.0.1 localhost\n");
}

TEST_F(HostsFileScript, folderInPlaceOfTheFileIsRefused)
{
    fs::create_directories(m_hosts);
    EXPECT_FALSE(replace(m_block));
}

} // namespace stillgate
