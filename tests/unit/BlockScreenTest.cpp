#include "App/BlockModalWindowController.h"
#include "Views/BlockScreen/BlockIllustrations.h"
#include "Views/BlockScreen/BlockModalViewModel.h"
#include "Views/Common/Illustrations.h"
#include "tests/support/FakeBackend.h"
#include "tests/support/FakeShell.h"
#include "tests/support/Matchers.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TextsInUse.h"

namespace stillgate
{

using namespace test;
using enum MacBlockVariant;

TEST(BlockScreen, subtitleIsTheGuardiansThenTheCategorysThenTheVariants)
{
    const std::pair<BlockModal, QString> cases[] = {
        {{.category = "news", .guardianMessage = "Later."}, "Later."},
        {{.variant = budget, .category = "gaming", .guardianMessage = ""}, "blockScreenMotivation.gaming"},
        {{.variant = website, .category = "custom"}, "blockScreenMotivation.genericSite"},
        {{.variant = website, .domain = "a.example"}, "blockScreen.siteBlocked\nblockScreenMotivation.genericSite"},
        {{.variant = website, .domain = "a.example", .category = "news"}, "blockScreenMotivation.news"},
    };

    for (const auto& [modal, subtitle] : cases)
        EXPECT_EQ(BlockModalViewModel(modal, {}, 12, "/nowhere").subtitle(), subtitle);
    const TextsInUse texts{R"({"blockScreen": {"appBlocked": "{{appName}} is blocked"}})"};
    EXPECT_EQ(BlockModalViewModel({.appName = "Chess"}, {}, 12, "/nowhere").title(), "Chess is blocked");
}

TEST(BlockScreen, pictureFollowsTheHour)
{
    const std::pair<int, std::string> cases[] = {{5, "ill-sunset-bench"}, {6, "ill-sunrise"}, {11, "ill-sunrise"},
        {12, "ill-reading"}, {17, "ill-reading"}, {18, "ill-sunset-bench"}};

    for (const auto& [hour, picture] : cases)
        EXPECT_EQ(illustrationName({.category = "news"}, hour), picture) << hour;
    EXPECT_EQ(illustrationName({.variant = budget, .category = "custom"}, 6), "ill-stretching");
    EXPECT_EQ(illustrationName({.category = "news", .illustrationOverride = "ill-yoga"}, 6), "ill-yoga");
    EXPECT_EQ(illustrationName({.category = "news", .illustrationOverride = ""}, 6), "ill-sunrise");
}

TEST(BlockScreen, pictureThatIsNotThereLeavesTheSymbol)
{
    const TemporaryFolder bundle;
    const auto resources = bundle.path() / "Contents/Resources";
    putFile(resources / "ill-nature.webp", "picture");
    putFile(bundle.path() / "secret.webp", "not a picture of ours");
    EXPECT_EQ(illustrationAddress(bundle.path(), "ill-nature").toLocalFile().toStdString(),
        (resources / "ill-nature.webp").string());
    for (const auto* name : {"ill-none", "", "../../secret", "/etc/passwd", "ill-nature.webp"})
        EXPECT_TRUE(illustrationAddress(bundle.path(), name).isEmpty()) << name;

    const BlockModalViewModel lost{{.category = "news", .illustrationOverride = "ill-gone"}, {}, 12, bundle.path()};
    EXPECT_TRUE(lost.illustration().isEmpty()) << "nor the category's picture";
    EXPECT_EQ(lost.symbol(), "desktopcomputer");
}

/// A controller whose windows a test sees.
class BlockModalScreen : public testing::Test
{
protected:
    BlockModalScreen() { m_controller.showIn(m_windows); }

    void show(const BlockModal& modal)
    {
        m_controller.showBlockModal(modal, [this] { ++m_dismissed; });
        m_viewModel = std::make_unique<BlockModalViewModel>(modal, m_windows.blockModalActions, 12, "/nowhere");
    }

    FakeBackend m_backend;
    FakeWindowFactory m_windows;
    BlockModalWindowController m_controller{m_backend};
    std::unique_ptr<BlockModalViewModel> m_viewModel;
    int m_dismissed = 0;
};

TEST_F(BlockModalScreen, usedUpDayLeadsToTheTasksAndNotOn)
{
    show({.variant = budget, .allowBypass = true});
    m_viewModel->askToContinue();
    EXPECT_FALSE(m_viewModel->canContinue() || m_viewModel->showConfirm());
    EXPECT_TRUE(m_viewModel->canOpenTasks());
    m_viewModel->openTasks();
    EXPECT_THAT(m_windows.settings, ElementsAre("shown"));
    EXPECT_EQ(m_dismissed, 1);
    EXPECT_THAT(m_windows.onScreen, IsEmpty());
}

TEST_F(BlockModalScreen, strictOneIsNotPassed)
{
    for (const auto variant : {app, website}) {
        show({.variant = variant, .allowBypass = false});
        m_viewModel->askToContinue();
        EXPECT_FALSE(m_viewModel->canContinue() || m_viewModel->showConfirm() || m_viewModel->canOpenTasks());
    }
}

TEST_F(BlockModalScreen, goingOnIsAskedTwiceAndTheGuardianIsTold)
{
    const auto bypass = "reportTampering bypass_attempt: blockScreen.continue — Chess";
    for (const auto& message : {std::optional<std::string>{}, {""}, {"Later."}}) {
        m_backend.calls.clear();
        m_dismissed = 0;
        show({.appName = "Chess", .guardianMessage = message, .allowBypass = true});
        EXPECT_EQ(m_viewModel->isNoticeOfGuardian(), message.has_value());
        m_viewModel->continueAnyway();
        EXPECT_EQ(m_dismissed, 0) << "the question comes first";
        m_viewModel->askToContinue();
        m_viewModel->cancelConfirm();
        EXPECT_EQ(m_dismissed, 0);
        m_viewModel->askToContinue();
        m_viewModel->continueAnyway();
        EXPECT_EQ(m_dismissed, 1);
        EXPECT_EQ(std::ranges::count(m_backend.calls, bypass), message ? 1 : 0);
    }
}

TEST_F(BlockModalScreen, nextBlockTakesThePlaceWithoutEndingTheFirst)
{
    show({.appName = "Chess"});
    show({.appName = "Poker"});
    EXPECT_EQ(m_dismissed, 0);
    EXPECT_EQ(m_windows.onScreen.size(), 1U);
    m_controller.closeBlockModal();
    m_controller.closeBlockModal();
    EXPECT_EQ(m_dismissed, 1);
    EXPECT_THAT(m_windows.onScreen, IsEmpty());
}

} // namespace stillgate
