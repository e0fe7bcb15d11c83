#include "App/CommandLine.h"

#include <gtest/gtest.h>

namespace stillgate
{

namespace
{

template <class Expected>
bool asksFor(std::vector<std::string> arguments)
{
    return std::holds_alternative<Expected>(parseCommandLine(arguments, "1.2.3"));
}

} // namespace

TEST(CommandLine, takesOneKnownOption)
{
    EXPECT_TRUE(asksFor<RunHeadless>({"--headless"}));
    EXPECT_TRUE(asksFor<PrintAndExit>({"--help"}));
    EXPECT_TRUE(asksFor<UsageError>({}));
    EXPECT_TRUE(asksFor<UsageError>({"--Headless"}));
    EXPECT_TRUE(asksFor<UsageError>({"--headless", "--verbose"}));
    const std::vector<std::string> version{"--version"};
    EXPECT_EQ(std::get<PrintAndExit>(parseCommandLine(version, "1.2.3")).text, "stillgate 1.2.3\n");
}

} // namespace stillgate
