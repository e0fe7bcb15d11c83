#include "Backend/SessionTokens.h"
#include "Platform/Memory/MemoryFileManager.h"

#include <gtest/gtest.h>

namespace stillgate
{

class StoredTokens : public testing::Test
{
protected:
    static constexpr auto accessFile = "/home/ada/.local/share/com.stillgate.macos/secure/sg%5Faccess%5Ftoken";
    static constexpr auto refreshFile = "/home/ada/.local/share/com.stillgate.macos/secure/sg%5Frefresh%5Ftoken";

    MemoryFileManager m_files;
    KeychainService m_store{m_files};
    SessionTokens m_tokens{m_store};
};

TEST_F(StoredTokens, areStoredMaskedAndComeBack)
{
    const std::string access = "tok\xc3\xa9n";
    m_tokens.set(access, "refresh");
    const auto& stored = m_files.at(accessFile);
    EXPECT_EQ(stored.size(), access.size());
    for (std::size_t i = 0; i < access.size(); ++i)
        EXPECT_EQ(stored[i] ^ access[i], stored[0] ^ access[0]) << "one mask for every byte";
    EXPECT_NE(stored[0], access[0]);

    SessionTokens restarted{m_store};
    restarted.load();
    EXPECT_EQ(restarted.access(), access);
    EXPECT_EQ(restarted.refresh(), "refresh");
}

TEST_F(StoredTokens, clearWipesMemoryAndFiles)
{
    m_tokens.clear(); // of an empty session: harmless
    m_tokens.set("a", "r");
    m_tokens.clear();
    EXPECT_EQ(m_tokens.access(), std::nullopt);
    EXPECT_FALSE(m_files.contains(accessFile) || m_files.contains(refreshFile));
}

TEST_F(StoredTokens, fileThatIsMissingOrNoTextLoadsAsNothing)
{
    m_tokens.set("a", "r");
    m_files.files[accessFile] = m_files.at(accessFile) + "\xa5"; // unmasked 0xff
    m_files.files[refreshFile] = "";
    SessionTokens restarted{m_store};
    restarted.load();
    EXPECT_EQ(restarted.access(), std::nullopt);
    EXPECT_EQ(restarted.refresh(), "") << "an empty file is an empty token";

    m_files.files.clear();
    m_tokens.load();
    EXPECT_EQ(m_tokens.access(), "a") << "a missing file leaves the token as it is";
}

TEST_F(StoredTokens, sessionLivesInMemoryWhenItsFilesCannotBeWritten)
{
    m_files.diskIsFull = true;
    m_tokens.set("a", "r");
    EXPECT_EQ(m_tokens.access(), "a");
}

} // namespace stillgate
