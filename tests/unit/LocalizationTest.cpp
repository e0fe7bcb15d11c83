#include "Localization/LocalizationManager.h"
#include "Platform/Memory/MemoryBundle.h"
#include "Platform/Memory/MemoryFileManager.h"
#include "Platform/Memory/MemoryHost.h"
#include "Platform/Memory/MemoryUserDefaults.h"

#include <gtest/gtest.h>

namespace stillgate
{

class Localization : public testing::Test
{
protected:
    Localization()
    {
        put("en", R"({"common":{"cancel":"Cancel","save":"Save","list":["a"]},
            "time":{"day":"day","days":"{{count}} of {{count}} days, {{unknown}}"},"blank":""})");
        put("tr", R"({"common":{"cancel":"Vazgeç","save":7},"blank":""})");
    }

    void put(const std::string& language, std::string json)
    {
        m_files.put(m_bundle.path() / "Contents/Resources/i18n" / (language + ".json"), std::move(json));
    }

    [[nodiscard]] std::string text(std::string_view key, const LocalizationManager::Parameters& parameters = {}) const
    {
        return LocalizationManager{m_bundle, m_files, m_defaults, m_host}.localized(key, parameters);
    }

    MemoryBundle m_bundle;
    MemoryFileManager m_files;
    MemoryUserDefaults m_defaults;
    MemoryHost m_host;
};

TEST_F(Localization, languageIsTheSettingElseTurkishElseEnglish)
{
    const struct
    {
        std::optional<std::string> setting;
        std::string desktop;
        std::string locale;
        std::string cancel;
    } cases[] = {
        {std::nullopt, "tr", "tr", "Vazgeç"},
        {std::nullopt, "de", "en", "Cancel"},
        {std::nullopt, "", "en", "Cancel"},
        {"tr", "en", "tr", "Vazgeç"},
        {"fr", "tr", "fr", "Cancel"},
        {"../../../../home/tr", "en", "../../../../home/tr", "Cancel"},
    };

    m_files.put("/home/tr.json", R"({"common":{"cancel":"From outside"}})");
    m_files.put("/opt/stillgate/Contents/Resources/i18n/../../../../home/tr.json", m_files.at("/home/tr.json"));
    for (const auto& [setting, desktop, locale, cancel] : cases) {
        m_defaults.strings.clear();
        if (setting)
            m_defaults.setString("sg_language", *setting);
        m_host.language = desktop;
        EXPECT_EQ((LocalizationManager{m_bundle, m_files, m_defaults, m_host}.locale()), locale);
        EXPECT_EQ(text("common.cancel"), cancel) << locale;
    }
}

TEST_F(Localization, whatIsNoTextFallsThroughToTheKey)
{
    m_host.language = "tr";
    const std::pair<const char*, const char*> cases[] = {
        {"common.cancel", "Vazgeç"},
        {"common.save", "Save"},
        {"blank", ""},
        {"time.day", "day"},
        {".common..cancel.", "Vazgeç"},
        {"common", "common"},
        {"common.list", "common.list"},
        {"common.cancel.more", "common.cancel.more"},
        {"", ""},
        {".", "."},
    };

    for (const auto& [key, expected] : cases)
        EXPECT_EQ(text(key), expected) << key;
}

TEST_F(Localization, fillsInWhatIsKnown)
{
    EXPECT_EQ(text("time.days", {{"count", "3"}, {"other", "4"}}), "3 of 3 days, {{unknown}}");
    EXPECT_EQ(text("time.days", {{"count", "{{count}}"}}), "{{count}} of {{count}} days, {{unknown}}");
    EXPECT_EQ(text("missing {{count}}", {{"count", "3"}}), "missing 3");
}

TEST_F(Localization, brokenFilesCountAsMissing)
{
    m_host.language = "tr";
    for (const auto* broken : {"", "[]", R"({"common":)", R"("text")", "{\"common\":{\"cancel\":\"\xff\"}}"}) {
        put("tr", broken);
        EXPECT_EQ(text("common.cancel"), "Cancel") << broken;
        put("en", broken);
        EXPECT_EQ(text("common.cancel"), "common.cancel") << broken;
        put("en", R"({"common":{"cancel":"Cancel"}})");
    }
}

} // namespace stillgate
