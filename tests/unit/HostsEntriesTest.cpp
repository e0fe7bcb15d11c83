#include "Blocking/HostsEntries.h"

#include "tests/support/Matchers.h"

#include <set>

namespace stillgate
{

using namespace test;

namespace
{

std::vector<std::string> namesOf(const std::vector<std::string>& domains)
{
    const HostNames names{domains};
    return {names.sorted().begin(), names.sorted().end()};
}

} // namespace

TEST(HostsEntries, relatedSitesFollowOneLevelDeep)
{
    EXPECT_EQ(namesOf({"twitter.com"}).size(), 42U);
    EXPECT_THAT(namesOf({"Instagram.com"}), Contains("static.ig.me"));
    EXPECT_THAT(namesOf({"t.co"}), Not(Contains("twitter.com")));
    EXPECT_THAT(namesOf({"m.twitter.com"}), Not(Contains("x.com")));
}

TEST(HostsEntries, invalidDomainsAreLeftOut)
{
    const std::string label(49, 'a');
    const auto ofLength253 = label + "." + label + "." + label + "." + label + "." + label + ".co1";
    ASSERT_EQ(ofLength253.size(), 253U);
    EXPECT_EQ(namesOf({ofLength253}).size(), 7U);
    EXPECT_THAT(namesOf({ofLength253 + "m"}), IsEmpty());
    for (const auto* domain : {"", "under_score.com", "a.com.", ".a.com", "a..com", "-a.com", "a-.com",
             "a.com\n127.0.0.1 b", "a.com/path", "m\xc3\xbcnchen.de", "a.com' ; rm -rf /"})
        EXPECT_THAT(namesOf({domain}), IsEmpty()) << domain;
}

TEST(HostsEntries, namesAscendAndNoneIsThereTwice)
{
    std::vector<std::string> domains;
    for (int i = 0; i < 500; ++i)
        domains.push_back((i % 3 == 0 ? "www." : i % 7 == 0 ? "m." : "") + std::to_string(i * 7919 % 400) + ".example");
    std::set<std::string> expected;
    for (const auto& domain : domains) {
        for (const auto* prefix : {"", "www.", "m.", "mobile.", "api.", "cdn.", "static."})
            expected.insert(prefix + domain);
    }
    EXPECT_THAT(namesOf(domains), testing::ElementsAreArray(expected));
}

TEST(HostsEntries, aDomainGivesSevenLinesBetweenTheMarkers)
{
    EXPECT_EQ(generateHostsEntries({"B.example \t"}),
        "\n# Stillgate Protected Sites\n127.0.0.1 api.b.example\n127.0.0.1 b.example\n127.0.0.1 cdn.b.example\n"
        "127.0.0.1 m.b.example\n127.0.0.1 mobile.b.example\n127.0.0.1 static.b.example\n127.0.0.1 www.b.example\n"
        "# End Stillgate\n");
}

} // namespace stillgate
