#include "Guard/BlockNames.h"

#include "Blocking/HostsEntries.h"
#include "Guard/SealedText.h"
#include "Platform/Linux/FileDescriptor.h"

#include <gmock/gmock.h>

#include <fcntl.h>
#include <sys/mman.h>

namespace stillgate::guard
{

using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

constexpr auto head = "\n# Stillgate Protected Sites\n";
constexpr auto end = "# End Stillgate\n";

std::string blockOf(const std::string& lines)
{
    return head + lines + end;
}

} // namespace

TEST(BlockNames, readsWhatTheApplicationWritesAndWritesItToTheByte)
{
    for (const auto& domains :
        std::vector<std::vector<std::string>>{{"example.com"}, {"x.com", "a-b.example", "127.1"}}) {
        const auto block = generateHostsEntries(domains);
        const auto names = readBlock(block);
        ASSERT_TRUE(names);
        EXPECT_EQ(names->size(), HostNames{domains}.sorted().size());
        EXPECT_EQ(blockText(*names), block);
    }
    EXPECT_THAT(readBlock(generateHostsEntries({})).value(), IsEmpty());
    EXPECT_EQ(blockText({}), "");
}

TEST(BlockNames, namesOfTheMachineAreLeftOutAndCostNoOther)
{
    const BlockNames names{"a.localhost", "localhost", "mylocalhost", "www", "www.a.example", "wwww", "x.www"};
    EXPECT_THAT(withoutNamesOfMachine(names, "WWW"), ElementsAre("mylocalhost", "www.a.example", "wwww", "x.www"));
    EXPECT_EQ(withoutNamesOfMachine(names, "").size(), 5U) << "a machine without a name";
}

TEST(BlockNames, everyOtherByteIsRefused)
{
    const std::string nul{"127.0.0.1 a\0.com\n", 17};
    const std::string blocks[] = {
        "",
        "\n",
        end,
        head,
        std::string{head}.substr(1) + end,
        blockOf("") + "\n",
        blockOf("").substr(0, blockOf("").size() - 1),
        blockOf(end),
        blockOf(head),
        blockOf("127.0.0.1 a.com"),
        blockOf("127.0.0.1 a.com\n\n"),
        blockOf("127.0.0.1 a.com \n"),
        blockOf("127.0.0.1  a.com\n"),
        blockOf("127.0.0.1\ta.com\n"),
        blockOf("127.0.0.1 a.com b.com\n"),
        blockOf("127.0.0.1 a.com # 1\n"),
        blockOf("127.0.0.1 a.com\r\n"),
        blockOf("127.0.0.1 A.com\n"),
        blockOf("127.0.0.1 \n"),
        blockOf("127.0.0.1 .\n"),
        blockOf("127.0.0.1 a..com\n"),
        blockOf("127.0.0.1 .a.com\n"),
        blockOf("127.0.0.1 a.com.\n"),
        blockOf("127.0.0.1 -a.com\n"),
        blockOf("127.0.0.1 b\xc3\xbcro.example\n"),
        blockOf("127.0.0.1 " + std::string(254, 'a') + "\n"),
        blockOf("127.0.0.2 a.com\n"),
        blockOf("10.0.0.1 bank.example\n"),
        blockOf("127.0.0.1 b.com\n127.0.0.1 a.com\n"),
        blockOf("127.0.0.1 a.com\n127.0.0.1 a.com\n"),
        blockOf(nul),
        blockOf("127.0.0.1 a.com\n" + std::string{end} + "10.0.0.1 bank.example\n"),
    };
    for (const auto& block : blocks) {
        const auto names = readBlock(block);
        ASSERT_FALSE(names) << block;
        EXPECT_EQ(names.error().kind, Refusal::Kind::invalidArgument);
    }
}

TEST(BlockNames, unionAndSubsetAreThoseOfSets)
{
    EXPECT_THAT(unionOf({"a", "c"}, {"b", "c", "d"}), ElementsAre("a", "b", "c", "d"));
    EXPECT_THAT(unionOf({}, {"a"}), ElementsAre("a"));
    EXPECT_TRUE(isSubset({}, {}));
    EXPECT_TRUE(isSubset({"b"}, {"a", "b"}));
    EXPECT_FALSE(isSubset({"a", "b"}, {"b"}));
}

TEST(SealedText, takesNothingThatCanStillChange)
{
    const auto isTaken = [](int seals, off_t size) {
        const FileDescriptor file{::memfd_create("block", MFD_CLOEXEC | MFD_ALLOW_SEALING)};
        EXPECT_EQ(::ftruncate(file.number(), size), 0);
        EXPECT_EQ(::fcntl(file.number(), F_ADD_SEALS, seals), 0);
        const auto text = SealedText::map(file.number());
        return text && text->bytes() == std::string(static_cast<std::size_t>(size), '\0');
    };
    constexpr int all = F_SEAL_WRITE | F_SEAL_SHRINK | F_SEAL_GROW;
    EXPECT_TRUE(isTaken(all, 5));
    EXPECT_FALSE(isTaken(all, 0));
    EXPECT_FALSE(isTaken(all, SealedText::largest + 1));
    EXPECT_FALSE(isTaken(F_SEAL_SHRINK | F_SEAL_GROW, 5));
    EXPECT_FALSE(isTaken(F_SEAL_FUTURE_WRITE | F_SEAL_SHRINK | F_SEAL_GROW, 5));
    EXPECT_FALSE(isTaken(F_SEAL_WRITE | F_SEAL_GROW, 5));
    EXPECT_FALSE(isTaken(F_SEAL_WRITE | F_SEAL_SHRINK, 5));
    EXPECT_FALSE(SealedText::map(STDIN_FILENO));
    EXPECT_FALSE(SealedText::map(-1));
}

} // namespace stillgate::guard
