#include "Blocking/HostsEntries.h"

#include <gmock/gmock.h>

#include <set>

namespace stillgate
{

using testing::Contains;
using testing::ElementsAre;
using testing::Not;

namespace
{

std::vector<std::string> namesOf(const std::vector<std::string>& domains)
{
    const HostNames names{domains};
    return {names.sorted().begin(), names.sorted().end()};
}

} // namespace

TEST(HostsEntries, aDomainGivesSevenNames)
{
    EXPECT_THAT(namesOf({"WWW.Example.com \t"}),
        ElementsAre("api.www.example.com", "cdn.www.example.com", "m.www.example.com", "mobile.www.example.com",
            "static.www.example.com", "www.example.com", "www.www.example.com"));
}

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
    for (const auto& domain :
        {ofLength253 + "m", std::string{}, std::string{"under_score.com"}, std::string{"a.com."}, std::string{".a.com"},
            std::string{"a..com"}, std::string{"-a.com"}, std::string{"a-.com"}, std::string{"a.com\n127.0.0.1 b"},
            std::string{"a.com/path"}, std::string{"m\xc3\xbcnchen.de"}, std::string{"a.com' ; rm -rf /"}})
        EXPECT_TRUE(namesOf({domain}).empty()) << domain;
    EXPECT_EQ(generateHostsEntries({"_"}), "\n# Stillgate Protected Sites\n# End Stillgate\n");
}

TEST(HostsEntries, namesAscendAndNoneIsThereTwice)
{
    std::vector<std::string> domains;
    for (int i = 0; i < 500; ++i)
        domains.push_back((i % 3 == 0 ? "www." : i % 7 == 0 ? "m." : "") + std::to_string(i * 7919 % 400) + ".example");
    const auto names = namesOf(domains);
    std::set<std::string> expected;
    for (const auto& domain : domains) {
        for (const auto* prefix : {"", "www.", "m.", "mobile.", "api.", "cdn.", "static."})
            expected.insert(prefix + domain);
    }
    EXPECT_EQ(names, std::vector<std::string>(expected.begin(), expected.end()));
}

TEST(HostsEntries, theBlockIsALineForEachNameBetweenItsMarkers)
{
    const auto text = generateHostsEntries({"b.example"});
    EXPECT_TRUE(text.starts_with("\n# Stillgate Protected Sites\n127.0.0.1 api.b.example\n127.0.0.1 b.example\n"));
    EXPECT_TRUE(text.ends_with("\n127.0.0.1 www.b.example\n# End Stillgate\n"));
}

} // namespace stillgate
