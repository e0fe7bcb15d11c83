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

TEST(CommandLine, tellsWhatItIs)
{
    EXPECT_TRUE(asksFor<PrintAndExit>({"-h"}));
    const std::vector<std::string> version{"--version"};
    EXPECT_EQ(std::get<PrintAndExit>(parseCommandLine(version, "1.2.3")).text, "stillgate 1.2.3\n");
}

TEST(CommandLine, refusesOptionsThatDontGoTogether)
{
    const std::vector<std::string> wrong[] = {
        {"--Headless"},
        {"--headless", "--version"},
        {"--sign-in", "--help"},
        {"--headless", "--sign-in", "--headless"},
    };
    for (const auto& arguments : wrong)
        EXPECT_TRUE(asksFor<UsageError>(arguments)) << arguments.front();
}

} // namespace stillgate
