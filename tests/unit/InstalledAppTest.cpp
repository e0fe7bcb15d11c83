#include "App/InstalledApp.h"

#include "Platform/Memory/MemoryWorkspace.h"
#include "tests/support/Matchers.h"

#include <QLocale>

namespace stillgate
{

using namespace test;

using testing::FieldsAre;

/// In a language of the application.
class AppScan : public testing::Test
{
protected:
    void SetUp() override { QLocale::setDefault(QLocale{"en"}); }

    void TearDown() override { QLocale::setDefault(QLocale::system()); }

    std::vector<std::string> scannedNames(const UsageTracker::AppUsage& usage = {})
    {
        std::vector<std::string> names;
        for (const auto& app : scanInstalledApps(m_workspace, usage))
            names.push_back(app.name);
        return names;
    }

    MemoryWorkspace m_workspace;
};

TEST_F(AppScan, leadsWithTheMostUsedAndGoesOnByName)
{
    m_workspace.installed = {{"org.zebra", "zebra", {}}, {"org.chess", "Chess", {}}, {"org.Mail", "mail", {}},
        {"b", "Ärger", {}}, {"a", "Ärger", {}}, {"org.go", "go", {}}};
    EXPECT_THAT(scannedNames(), ElementsAre("Ärger", "Ärger", "Chess", "go", "mail", "zebra"));
    EXPECT_EQ(scanInstalledApps(m_workspace, {}).front().bundleId, "a");
    EXPECT_THAT(scannedNames({{"org.go", 60}, {"org.zebra", 61}, {"org.chess", 60}, {"not.installed", 900}}),
        ElementsAre("zebra", "Chess", "go", "Ärger", "Ärger", "mail"));
    EXPECT_THAT(scannedNames({{"org.mail", 60}}), ElementsAre("Ärger", "Ärger", "Chess", "go", "mail", "zebra"))
        << "identifiers are compared as they are";
}

TEST_F(AppScan, sortsAndFindsInTheUsersLanguage)
{
    QLocale::setDefault(QLocale{"tr"});
    m_workspace.installed = {{"1", "Ilgaz", {}}, {"2", "İnsan", {}}, {"3", "çeviri", {}}, {"4", "Cep", {}},
        {"5", "Instagram", {}}, {"6", "Zil", {}}};
    EXPECT_THAT(scannedNames(), ElementsAre("Cep", "çeviri", "Ilgaz", "Instagram", "İnsan", "Zil"));
    const auto apps = scanInstalledApps(m_workspace, {});
    const auto find = [&](const char* text) {
        std::string found;
        for (const auto& app : filteredApps(apps, text))
            found += app.bundleId;
        return found;
    };
    EXPECT_EQ(find("insan"), "2");
    EXPECT_EQ(find("ILGAZ"), "1");
    EXPECT_EQ(find("ılgaz"), "1");
    EXPECT_EQ(find("ZİL"), "6");
    EXPECT_EQ(find("instagram"), "5");
    EXPECT_EQ(find("INSTAGRAM"), "5");
}

TEST_F(AppScan, addsWhatRunsAndIsInNoMenu)
{
    m_workspace.installed = {
        {"org.chess", "Chess", "chess-icon"}, {"org.chess", "Chess again", {}}, {"org.go", "Go", {}}};
    m_workspace.app("org.chess").name = "Chess as it runs";
    m_workspace.app("com.apple.finder").name = "Files";
    m_workspace.app("com.apple.finder").icon = "folder";
    m_workspace.app("unnamed").name = std::nullopt;
    for (const auto* app : {"com.apple.finder", "org.chess", "unnamed", "ended"})
        m_workspace.bringToFront(app);
    m_workspace.bringToFront(std::nullopt);
    m_workspace.app("ended").terminated = true;
    (void)m_workspace.app("not.launched");
    EXPECT_THAT(scanInstalledApps(m_workspace, {}),
        ElementsAre(FieldsAre("org.chess", "Chess", "chess-icon"), FieldsAre("com.apple.finder", "Files", "folder"),
            FieldsAre("org.go", "Go", ""), FieldsAre("unnamed", "unnamed", "")));
}

TEST_F(AppScan, isFilteredByNameOrIdentifier)
{
    const std::vector<InstalledApp> apps{
        {"org.mozilla.firefox", "Web Browser", {}}, {"org.go", "Go", {}}, {"org.Chess", "Straße", {}}};
    const std::pair<const char*, std::vector<InstalledApp>> cases[] = {
        {"", apps},
        {"FIREFOX", {apps[0]}},
        {"bRow", {apps[0]}},
        {"ORG.", apps},
        {"o", apps},
        {"straß", {apps[2]}},
        {" ", {apps[0]}},
        {"[", {}},
    };
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(filteredApps(apps, text), expected) << text;
}

} // namespace stillgate
