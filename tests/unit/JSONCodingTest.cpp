#include "Models/JSONCoding.h"

#include "Models/Groups.h"
#include "Models/Session.h"
#include "Models/Sharing.h"
#include "tests/support/Matchers.h"

namespace stillgate
{

namespace
{

const JSONDecoder wireDecoder{DateForm::iso8601};
const JSONEncoder wireEncoder{DateForm::iso8601};

template <class T>
std::string failureOf(std::string_view text, JSONDecoder decoder = wireDecoder)
{
    const auto decoded = decoder.decode<T>(text);
    return decoded ? "decoded" : decoded.error().description();
}

constexpr auto wholeRule = R"({"id":"r","enabled":true,"customDomains":[],"excludedDomains":[],"unblockPolicy":"x"})";

} // namespace

TEST(JSONCoding, failureNamesRecordAndKeyPath)
{
    const std::string rules = "[" + std::string{wholeRule} + "," + wholeRule + ",";

    const std::pair<std::string, std::string> cases[] = {
        {failureOf<std::vector<BlockRule>>(
             rules + R"({"id":"r","enabled":true,"customDomains":[],"unblockPolicy":"x"}])"),
            "BlockRule[2].excludedDomains: required, but missing"},
        {failureOf<BlockRule>(R"({"id":"r","enabled":true,"customDomains":[],"excludedDomains":null})"),
            "BlockRule.excludedDomains: required, but null"},
        {failureOf<BlockRule>(R"({"id":"r","enabled":true,"customDomains":["a",7]})"),
            "BlockRule.customDomains[1]: expected text, found number"},
        {failureOf<CreateGuardianRuleBody>(
             R"({"enabled":true,"customDomains":[],"customApps":{"mac os":[{"name":"a"},{}]}})"),
            R"(CreateGuardianRuleBody.customApps["mac os"][1].name: required, but missing)"},
        {failureOf<LinkCodeResponse>(R"({"connection":[]})"),
            "LinkCodeResponse.connection: expected an object, found array"},
        {failureOf<CreateGuardianRuleBody>(R"({"enabled":true,"customDomains":[],"customApps":[]})"),
            "CreateGuardianRuleBody.customApps: expected an object, found array"},
        {failureOf<std::vector<BlockRule>>("{}"), "BlockRule: expected a list, found object"},
        {failureOf<SGUser>(R"({"id":"u","email":"e","emailVerified":"yes"})"),
            "SGUser.emailVerified: expected true or false, found string"},
        {failureOf<GuardianActivityEvent>(R"({"id":"7"})"),
            "GuardianActivityEvent.id: expected a whole number, found string"},
        {failureOf<LeaderboardEntry>(R"({"rank":1,"userId":"u","focusHours":"2"})"),
            "LeaderboardEntry.focusHours: expected a number, found string"},
        {failureOf<BlockRule>(R"({"id":"r","category":[],"customApps":{}})"),
            "BlockRule.category: expected text, found array"},
        {failureOf<SharingCode>(R"({"code":"c","userId":"u","isActive":true,"createdAt":"yesterday"})"),
            "SharingCode.createdAt: Cannot parse date: yesterday"},
        {failureOf<SharingCode>(R"({"code":"c","userId":"u","isActive":true,"createdAt":7})"),
            "SharingCode.createdAt: expected a date as text, found number"},
    };

    for (const auto& [found, expected] : cases)
        EXPECT_EQ(found, expected);
}

TEST(JSONCoding, textThatIsNoJSONFailsAndIsNotQuoted)
{
    EXPECT_EQ(failureOf<SGUser>(R"({"id":"secret)"), "SGUser: not JSON, at byte 14");
    EXPECT_EQ(failureOf<SGUser>(""), "SGUser: not JSON, at byte 1");
    EXPECT_EQ(failureOf<SGUser>("{\"id\":\"\xff\"}"), "SGUser: not JSON, at byte 8");
    EXPECT_EQ(failureOf<SGUser>(std::string(1'000'000, '[')), "SGUser: nested too deeply");
    EXPECT_EQ(failureOf<SGUser>(R"({"id":"a\"]]","email":"[[["})"), "decoded") << "brackets in texts don't nest";
}

TEST(JSONCoding, absentAndNullOptionalsAreNoneAndUnknownKeysAreIgnored)
{
    const auto rule = wireDecoder.decode<BlockRule>(
        R"({"id":"r","category":null,"enabled":true,"customDomains":[],"excludedDomains":[],"unblockPolicy":"later",
            "customApps":{"windows":[{"name":"a","executableName":"a.exe","publisher":"p"}]},"unheardOf":{"a":[1]}})");
    ASSERT_TRUE(rule) << rule.error().description();
    EXPECT_EQ(rule->category, std::nullopt);
    EXPECT_EQ(rule->userId, std::nullopt);
    EXPECT_EQ(rule->unblockPolicy, "later");
    EXPECT_EQ(rule->customApps->at("windows").front().executableName, "a.exe");
}

TEST(JSONCoding, keysAreWrittenInOrderAndNoneIsLeftOut)
{
    const EffectiveRule rule{
        .id = "r",
        .userId = "u",
        .customName = "Zzz",
        .enabled = false,
        .customDomains = {{"b.example", "a.example"}},
        ._source = "guardian",
    };
    EXPECT_EQ(*wireEncoder.encode(rule),
        R"({"id":"r","userId":"u","customName":"Zzz","enabled":false,"customDomains":["b.example","a.example"],)"
        R"("_source":"guardian"})");
    EXPECT_EQ(*wireEncoder.encode(GuardianConnectionSettings{.flexibilityMode = "permanent"}),
        R"({"flexibilityMode":"permanent"})");
    EXPECT_EQ(*wireEncoder.encode(std::vector<AppInfo>{}), "[]");
}

TEST(JSONCoding, wholeNumbersKeep64Bits)
{
    const auto codes = [](const std::string& number) {
        return R"({"deviceCode":"d","userCode":"u","verificationUrl":"v","interval":5,"expiresIn":)" + number + "}";
    };
    for (const auto* number : {"9223372036854775807", "-9223372036854775808", "9007199254740993"}) {
        const auto decoded = wireDecoder.decode<DeviceCodeResponse>(codes(number));
        ASSERT_TRUE(decoded) << decoded.error().description();
        EXPECT_EQ(std::to_string(decoded->expiresIn), number);
    }
    EXPECT_EQ(failureOf<DeviceCodeResponse>(codes("9223372036854775808")),
        "DeviceCodeResponse.expiresIn: a whole number of more than 64 bits");
    EXPECT_EQ(failureOf<DeviceCodeResponse>(codes("1.5")),
        "DeviceCodeResponse.expiresIn: expected a whole number, found number");
    EXPECT_EQ(failureOf<DeviceCodeResponse>(codes("1e999")), "DeviceCodeResponse: a number out of range");
}

TEST(JSONCoding, coderChoosesTheFormOfDates)
{
    const SharingCode code{
        .code = "c",
        .userId = "u",
        .createdAt = dateFromISO8601("2026-01-15T08:30:00.25Z"),
        .isActive = true,
    };
    const JSONEncoder cacheEncoder{DateForm::secondsSince2001};
    const JSONDecoder cacheDecoder{DateForm::secondsSince2001};

    EXPECT_EQ(
        *wireEncoder.encode(code), R"({"code":"c","userId":"u","createdAt":"2026-01-15T08:30:00Z","isActive":true})");
    const auto cached = cacheEncoder.encode(code);
    EXPECT_EQ(*cached, R"({"code":"c","userId":"u","createdAt":790158600.25,"isActive":true})");
    EXPECT_EQ(cacheDecoder.decode<SharingCode>(*cached).value(), code);
    EXPECT_EQ(failureOf<SharingCode>(R"({"code":"c","userId":"u","isActive":true,"createdAt":1e300})", cacheDecoder),
        "SharingCode.createdAt: date out of range");
}

TEST(JSONCoding, textThatIsNotUTF8CannotBeWritten)
{
    const auto encoded = wireEncoder.encode(ErrorResponse{"\xff"});
    ASSERT_FALSE(encoded);
    EXPECT_EQ(encoded.error(), Error{EncodingFailure{"a text that isn't UTF-8"}});
}

} // namespace stillgate
