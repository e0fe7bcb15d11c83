#include "Blocking/CategoryDomains.h"

#include "Blocking/DomainNames.h"
#include "Platform/Linux/LinuxFileManager.h"
#include "Platform/Memory/MemoryBundle.h"
#include "Platform/Memory/MemoryFileManager.h"
#include "tests/support/Matchers.h"

#include <set>

namespace stillgate
{

using namespace test;

namespace
{

constexpr auto installed = "/opt/stillgate/Contents/Resources/block-lists/";
constexpr auto besideBundle = "/opt/stillgate/../DNSProxy/block-lists/";
constexpr auto built = STILLGATE_SOURCE_DIR "/Stillgate/App/../../DNSProxy/block-lists/";

std::string listOf(const std::string& domain)
{
    return R"({"domains":[{"domain":")" + domain + R"("}]})";
}

} // namespace

TEST(CategoryDomains, firstUsableCandidateWins)
{
    MemoryFileManager files;
    files.put(std::string{installed} + "gaming.json", R"({"domains":[{"domain":"a.example","rank":1}]})");
    files.put(std::string{besideBundle} + "gaming.json", "no JSON");
    files.put(std::string{built} + "gaming.json", listOf("built.example"));
    files.put(std::string{besideBundle} + "social-media.json", listOf("Beside.example"));
    files.put(std::string{built} + "social-media.json", listOf("built.example"));
    files.put(std::string{installed} + "news.json", R"({"domains":[]})");
    files.put(std::string{built} + "news.json", listOf("built.example"));
    CategoryDomains domains{files, MemoryBundle{}};

    EXPECT_TRUE(files.readFiles.empty()) << "nothing is read before the first question";
    EXPECT_THAT(domains.find("gaming"), ElementsAre("built.example"));
    EXPECT_THAT(domains.find("social_media"), ElementsAre("Beside.example"));
    EXPECT_THAT(domains.find("news"), IsEmpty());
    for (const auto* unknown : {"social-media", "custom", "adult", ""})
        EXPECT_THAT(domains.find(unknown), IsEmpty()) << unknown;

    files.put(std::string{installed} + "gaming.json", listOf("new.example"));
    EXPECT_THAT(domains.find("gaming"), ElementsAre("built.example")) << "read once";
}

TEST(CategoryDomains, entriesWithoutADomainArePassedOver)
{
    EXPECT_THAT(*domainsOfBlockList(R"({"domains":[{},{"name":"x"},{"domain":"A.example","name":"y"}],"v":2})"),
        ElementsAre("A.example"));
    for (const auto* text : {"", "[]", "{}", R"({"domains":{}})", R"({"domains":["a.example"]})",
             R"({"domains":[{"domain":"a.example","tags":[]}]})", R"({"domains":[{"domain":null}]})"})
        EXPECT_EQ(domainsOfBlockList(text), std::nullopt) << text;
}

TEST(CategoryDomains, listsOfTheProgramAreSoundAndDontOverlap)
{
    const LinuxFileManager files;
    CategoryDomains domains{files, MemoryBundle{}};
    std::set<std::string> seen;
    for (const auto* category : {"social_media", "gambling", "gaming", "streaming", "shopping", "adult", "news"}) {
        const auto list = domains.find(category);
        EXPECT_GE(list.size(), 200U) << category;
        EXPECT_TRUE(std::ranges::is_sorted(list)) << category;
        for (const auto& domain : list) {
            EXPECT_TRUE(isDomainName(domain) && domain.contains('.')) << domain;
            EXPECT_TRUE(seen.insert(domain).second) << domain << " stands twice";
        }
    }
}

} // namespace stillgate
