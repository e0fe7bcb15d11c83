#include "Platform/Linux/LinuxChildProcess.h"
#include "tests/support/Await.h"
#include "tests/support/TemporaryFolder.h"

namespace stillgate
{

using namespace test;

class Children : public testing::Test
{
protected:
    Result<int> bash(const std::string& script, std::string input = {}, std::vector<std::string> arguments = {})
    {
        arguments.insert(arguments.begin(), {"-c", script, "test"});
        return await(m_children.run({"/bin/bash", std::move(arguments), std::move(input)}));
    }

    LinuxChildProcess m_children;
};

TEST_F(Children, takeArgumentsAndInputOfAnySizeToTheByte)
{
    const TemporaryFolder folder;
    std::string large;
    while (large.size() < 29'000'000)
        large.append("127.0.0.1 example.com\n").append("\0\xff'$(false)", 11);
    const auto file = folder.path() / "copy 'of' $input";
    EXPECT_EQ(bash("cat >\"$1\"", large, {file.string()}), 0);
    EXPECT_TRUE(fileBytes(file) == large);
}

TEST_F(Children, endInAStatusOrAFailure)
{
    EXPECT_EQ(bash("exit 75"), 75);
    EXPECT_EQ(bash("exec <&-; echo noise; echo noise >&2; exit 3", std::string(1'000'000, 'x')), 3)
        << "input that nobody reads";
    EXPECT_FALSE(bash("kill -9 $$"));
    EXPECT_FALSE(await(m_children.run({"/does/not/exist", {}, "input"})));
}

TEST_F(Children, areNotInOurSession)
{
    EXPECT_EQ(bash("[ \"$(ps -o sid= -p $$ | tr -d ' ')\" = $$ ]"), 0);
}

} // namespace stillgate
