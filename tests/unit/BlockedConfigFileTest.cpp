#include "Blocking/BlockedConfigFile.h"

#include "Platform/Memory/MemoryFileManager.h"

#include <gtest/gtest.h>

namespace stillgate
{

TEST(BlockedConfigFile, staysAsItWasWrittenUntilItIsLeft)
{
    MemoryFileManager files;
    const auto inHome = *files.container / "blocked-config.json";
    BlockedConfigFile config{files};
    config.keep({.domains = {"a.example"}, .categories = {}});
    const auto text = files.read(inHome).value();
    EXPECT_TRUE(text.contains("a.example"));

    files.put(inHome, R"({"domains":[],"categories":[]})");
    EXPECT_EQ(files.read(inHome), text);
    EXPECT_TRUE(files.remove(inHome));
    EXPECT_EQ(files.read(inHome), text);

    files.container = "/var/lib/stillgate/group/2000";
    config.keep({.domains = {"b.example"}, .categories = {}});
    const auto shared = *files.container / "blocked-config.json";
    files.put(shared, "");
    EXPECT_TRUE(files.read(shared)->contains("b.example"));
    files.put(inHome, "");
    EXPECT_EQ(files.read(inHome), "") << "nobody reads it any more";

    config.leave();
    files.put(shared, "");
    EXPECT_EQ(files.read(shared), "");
}

} // namespace stillgate
