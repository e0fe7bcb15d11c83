#include "Platform/HostsBlock.h"

#include "tests/support/Matchers.h"

namespace stillgate
{

using namespace test;

namespace
{

constexpr auto hostName = "Workbench";

std::string remove(std::string_view text)
{
    return withoutHostsBlocks(text, hostName);
}

/// Writes M for the start marker and E for the end marker.
std::string marked(std::string text)
{
    for (auto at = text.find("<M>"); at != std::string::npos; at = text.find("<M>"))
        text.replace(at, 3, hostsMarker);
    for (auto at = text.find("<E>"); at != std::string::npos; at = text.find("<E>"))
        text.replace(at, 3, hostsMarkerEnd);
    return text;
}

} // namespace

TEST(HostsBlock, removalTakesTheBlockAndNothingElse)
{
    const struct
    {
        const char* what;
        std::string text;
        std::string expected;
    } cases[] = {
        {"lines of the user's before and behind", "a\n\n<M>\n127.0.0.1 x\n<E>\nb\n", "a\nb\n"},
        {"a line without line feed ahead, one behind", "a\n<M>\n127.0.0.1 x\n<E>\nb\n", "a\nb\n"},
        {"two blocks", "a\n\n<M>\n127.0.0.1 x\n<E>\nb\n\n<M>\n127.0.0.1 y\n<E>\nc\n", "a\nb\nc\n"},
        {"markers within longer lines", "a\n\n## <M> ##\n127.0.0.1 x\n## <E> ##\nb\n", "a\nb\n"},
        {"whatever stands between the markers", "<M>\n192.168.1.5 nas\n<E>\nb\n", "b\n"},
        {"an end marker alone stays", "a\n<E>\nb\n", "a\n<E>\nb\n"},
        {"no end: own lines go, the user's stay", "<M>\n127.0.0.1 a\n127.0.0.1 b\n192.168.1.5 nas\n127.0.0.1 c\n",
            "192.168.1.5 nas\n127.0.0.1 c\n"},
        {"no end: order breaks", "<M>\n127.0.0.1 b\n127.0.0.1 a\n", "127.0.0.1 a\n"},
        {"no end: a repeated name breaks the order", "<M>\n127.0.0.1 a\n127.0.0.1 a\n", "127.0.0.1 a\n"},
        {"no end: localhost is never taken", "<M>\n127.0.0.1 a\n127.0.0.1 localhost\n", "127.0.0.1 localhost\n"},
        {"no end: nor is this machine's name", "<M>\n127.0.0.1 workbench\n", "127.0.0.1 workbench\n"},
        {"no end: nor with a domain", "<M>\n127.0.0.1 workbench.home\n", "127.0.0.1 workbench.home\n"},
        {"no end: another machine's is", "<M>\n127.0.0.1 workbench2\n", ""},
        {"no end: what we never write", "<M>\n127.0.0.1 a_b\n", "127.0.0.1 a_b\n"},
        {"no end: two names on a line", "<M>\n127.0.0.1 a b\n", "127.0.0.1 a b\n"},
        {"no end: a comment behind the name", "<M>\n127.0.0.1 a#b\n", "127.0.0.1 a#b\n"},
        {"no end: another address", "<M>\n127.0.0.11 a\n", "127.0.0.11 a\n"},
        {"no end, but another block behind", "<M>\n127.0.0.1 a\nnas\n\n<M>\n127.0.0.1 b\n<E>\n", "nas\n"},
    };

    for (const auto& [what, text, expected] : cases)
        EXPECT_EQ(remove(marked(text)), marked(expected)) << what;
}

TEST(HostsBlock, namesAreReadFromTheBlocksAlone)
{
    const auto text = marked("127.0.0.1 localhost\n<M>\r\n127.0.0.1 x.example\r\n127.0.0.1\t y.example \n::1 z\n"
                             "127.0.0.1\n<E>\n127.0.0.1 other\n<M>\n127.0.0.1 a\n127.0.0.1 localhost\n");
    EXPECT_THAT(hostsBlockNames(text, hostName), ElementsAre("x.example", "y.example", "a"));
}

TEST(HostsBlock, copyTakesNoLineFeedOfTheUsers)
{
    const std::string block = "# Stillgate Protected Sites\n127.0.0.1 a.example\n# End Stillgate\n";
    EXPECT_EQ(withoutHostsBlocks("one\n\n" + block + "two\n" + block, {}), "one\ntwo\n");
    EXPECT_EQ(withoutHostsBlocks("one\n" + block, {}), "one") << "it had no end of its own";
}

} // namespace stillgate
