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

TEST(CommandLine, takesOptionsThatGoTogether)
{
    EXPECT_TRUE(asksFor<RunDesktop>({}));
    EXPECT_TRUE(asksFor<RunHeadless>({"--headless"}));
    EXPECT_TRUE(asksFor<SignIn>({"--headless", "--sign-in"}));
    EXPECT_TRUE(asksFor<SignIn>({"--sign-in", "--headless"}));
    EXPECT_TRUE(asksFor<PrintAndExit>({"--help"}));
    EXPECT_TRUE(asksFor<PrintAndExit>({"-h"}));
    const std::vector<std::string> version{"--version"};
    EXPECT_EQ(std::get<PrintAndExit>(parseCommandLine(version, "1.2.3")).text, "stillgate 1.2.3\n");
}

TEST(CommandLine, refusesEverythingElse)
{
    const std::vector<std::string> wrong[] = {
        {"--Headless"},
        {""},
        {"--sign-in"},
        {"--headless", "--verbose"},
        {"--headless", "--version"},
        {"--sign-in", "--help"},
        {"--headless", "--sign-in", "--headless"},
    };
    for (const auto& arguments : wrong)
        EXPECT_TRUE(asksFor<UsageError>(arguments)) << arguments.front();
}

} // namespace stillgate
