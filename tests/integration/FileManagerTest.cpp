#include "Platform/Linux/LinuxFileManager.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <sys/stat.h>

namespace stillgate
{

using namespace test;

class Files : public testing::Test
{
protected:
    [[nodiscard]] std::filesystem::path at(const std::string& name) const { return m_folder.path() / name; }

    [[nodiscard]] mode_t modeOf(const std::string& name) const
    {
        struct stat status{};
        EXPECT_EQ(::stat(at(name).c_str(), &status), 0);
        return status.st_mode & 07777;
    }

    [[nodiscard]] std::ptrdiff_t count() const
    {
        return std::distance(std::filesystem::directory_iterator{m_folder.path()}, {});
    }

    TemporaryFolder m_folder;
    LinuxFileManager m_files;
};

TEST_F(Files, areReplacedWholeAndPrivate)
{
    const std::string bytes("a\0b\n", 4);
    const auto umaskBefore = ::umask(0);
    EXPECT_TRUE(m_files.write(at("state"), "old and longer", {}));
    EXPECT_TRUE(m_files.write(at("state"), bytes, {}));
    EXPECT_TRUE(m_files.write(at("shared"), bytes, {.access = WriteOptions::Access::ownerAndGroup}));
    ::umask(umaskBefore);
    EXPECT_EQ(m_files.read(at("state")).value(), bytes);
    EXPECT_EQ(modeOf("state"), 0600U);
    EXPECT_EQ(modeOf("shared"), 0640U);
    EXPECT_EQ(count(), 2) << "no temporary file stays";
}

TEST_F(Files, failedWriteLeavesTheOldFileAndNoTrace)
{
    EXPECT_FALSE(m_files.write(at("missing/state"), "x", {}));
    std::filesystem::create_directory(at("state"));
    putFile(at("state/inside"), "x");
    EXPECT_FALSE(m_files.write(at("state"), "x", {})) << "a folder is no file";
    EXPECT_EQ(count(), 1);
}

TEST_F(Files, readsRegularFilesOfAnySizeAndNothingElse)
{
    const std::string large(3'000'001, 'x');
    putFile(at("large"), large);
    putFile(at("empty"), "");
    ASSERT_EQ(::mkfifo(at("pipe").c_str(), 0600), 0);
    EXPECT_EQ(m_files.read(at("large")).value(), large);
    EXPECT_EQ(m_files.read(at("empty")).value(), "");
    EXPECT_TRUE(m_files.read("/proc/self/status").value().contains("Name:")) << "a size of 0 is no size";
    EXPECT_EQ(m_files.read(at("none")).error().systemCode(), ENOENT);
    EXPECT_FALSE(m_files.read(m_folder.path()));
    EXPECT_FALSE(m_files.read(at("pipe"))) << "and it must not wait for a writer";
}

TEST_F(Files, areMovedAndRemoved)
{
    putFile(at("a"), "1");
    EXPECT_TRUE(m_files.move(at("a"), at("b")));
    EXPECT_TRUE(m_files.remove(at("b")));
    EXPECT_EQ(m_files.remove(at("b")).error().systemCode(), ENOENT);
    EXPECT_FALSE(m_files.move(at("a"), at("b")));
    EXPECT_TRUE(m_files.createDirectory(at("x/y")));
    EXPECT_TRUE(m_files.createDirectory(at("x/y")));
    EXPECT_FALSE(m_files.remove(at("x"))) << "a folder is no file";
}

TEST_F(Files, lieWhereTheDesktopPutsThem)
{
    ::setenv("XDG_DATA_HOME", at("data").c_str(), 1);
    EXPECT_EQ(m_files.applicationSupportDirectory(), at("data"));
    EXPECT_EQ(m_files.groupContainer(), at("data/group.com.stillgate.macos"));
    ::unsetenv("XDG_DATA_HOME");
    ::setenv("HOME", m_folder.path().c_str(), 1);
    EXPECT_EQ(m_files.applicationSupportDirectory(), at(".local/share"));
}

} // namespace stillgate
