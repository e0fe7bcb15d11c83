#include "App/BlockModalWindowController.h"
#include "Localization/L.h"
#include "Views/BlockScreen/BlockIllustrations.h"
#include "Views/BlockScreen/BlockModalViewModel.h"
#include "Views/Common/Illustrations.h"
#include "tests/support/FakeBackend.h"
#include "tests/support/FakeShell.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TextsInUse.h"

#include <gmock/gmock.h>

namespace stillgate
{

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;
using enum MacBlockVariant;

namespace
{

QString textOf(const char* key)
{
    return QString::fromStdString(L.localized(key));
}

} // namespace

TEST(BlockScreen, subtitleIsTheGuardiansThenTheCategorysThenTheVariants)
{
    const struct
    {
        BlockModal modal;
        QString title;
        QString subtitle;
    } cases[] = {
        {{.category = "news", .guardianMessage = "Later."}, {}, "Later."},
        {{.variant = budget, .category = "gaming", .guardianMessage = ""}, textOf("blockScreenMotivation.budget"),
            textOf("blockScreenMotivation.gaming")},
        {{.variant = website, .domain = "a.example", .category = "custom"}, textOf("blockScreen.siteBlocked"),
            textOf("blockScreen.siteBlocked") + "\n" + textOf("blockScreenMotivation.genericSite")},
        {{.variant = website}, textOf("blockScreen.siteBlocked"), textOf("blockScreenMotivation.genericSite")},
        {{.variant = website, .domain = "a.example", .category = "social_media"}, textOf("blockScreen.siteBlocked"),
            textOf("blockScreenMotivation.socialMedia")},
        {{.variant = sleep}, textOf("blockScreen.sleepTime"), textOf("blockScreenMotivation.sleep")},
        {{.variant = family}, textOf("blockScreen.familyTime"), textOf("blockScreenMotivation.family")},
    };

    for (const auto& [modal, title, subtitle] : cases) {
        const auto viewModel = std::make_unique<BlockModalViewModel>(modal, BlockModalActions{}, 12, "/nowhere");
        EXPECT_EQ(viewModel->subtitle(), subtitle);
        if (!title.isEmpty())
            EXPECT_EQ(viewModel->title(), title);
    }
    const TextsInUse texts{R"({"blockScreen": {"appBlocked": "{{appName}} is blocked"}})"};
    const BlockModalViewModel chess{{.appName = "Chess"}, {}, 12, "/nowhere"};
    EXPECT_EQ(chess.title(), "Chess is blocked");
}

TEST(BlockScreen, pictureFollowsTheHour)
{
    const struct
    {
        int hour;
        std::string app;
        std::string news;
        std::string budgetPicture;
    } cases[] = {{5, "ill-sunset-bench", "ill-sunset-bench", "ill-studying"},
        {6, "ill-nature", "ill-sunrise", "ill-stretching"}, {11, "ill-nature", "ill-sunrise", "ill-stretching"},
        {12, "ill-cycling", "ill-reading", "ill-cleaning"}, {17, "ill-cycling", "ill-reading", "ill-cleaning"},
        {18, "ill-sunset-bench", "ill-sunset-bench", "ill-studying"}};

    for (const auto& [hour, appPicture, news, budgetPicture] : cases) {
        EXPECT_EQ(illustrationName({.variant = app, .category = "custom"}, hour), appPicture) << hour;
        EXPECT_EQ(illustrationName({.variant = website, .category = "news"}, hour), news) << hour;
        EXPECT_EQ(illustrationName({.variant = budget}, hour), budgetPicture) << hour;
        EXPECT_EQ(illustrationName({.variant = sleep}, hour), "ill-sleeping");
    }
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

    void goOn() const
    {
        m_viewModel->askToContinue();
        m_viewModel->continueAnyway();
    }

    FakeBackend m_backend;
    FakeWindowFactory m_windows;
    BlockModalWindowController m_controller{m_backend};
    std::unique_ptr<BlockModalViewModel> m_viewModel;
    int m_dismissed = 0;
};

TEST_F(BlockModalScreen, waysOnDependOnVariantAndStrictness)
{
    const struct
    {
        BlockModal modal;
        bool canContinue;
        bool canOpenTasks;
        bool hasBudget;
    } cases[] = {
        {{.variant = app, .allowBypass = true}, true, false, false},
        {{.variant = app, .allowBypass = false}, false, false, false},
        {{.variant = website, .allowBypass = true}, true, false, false},
        {{.variant = budget, .allowBypass = true}, false, true, true},
    };

    for (const auto& [modal, canContinue, canOpenTasks, hasBudget] : cases) {
        show(modal);
        EXPECT_EQ(m_viewModel->canContinue(), canContinue);
        EXPECT_EQ(m_viewModel->canOpenTasks(), canOpenTasks);
        EXPECT_EQ(m_viewModel->hasBudget(), hasBudget);
        m_viewModel->askToContinue();
        EXPECT_EQ(m_viewModel->showConfirm(), canContinue);
    }
    EXPECT_EQ(m_viewModel->budgetText().toStdString(), "0m / 1m controller.used");
    m_viewModel->openTasks();
    EXPECT_THAT(m_windows.settings, ElementsAre("shown"));
    EXPECT_EQ(m_dismissed, 1);
    EXPECT_THAT(m_windows.onScreen, IsEmpty());
}

TEST_F(BlockModalScreen, goingOnIsAskedTwiceAndTheGuardianIsTold)
{
    const struct
    {
        std::optional<std::string> message;
        bool isTold;
    } cases[] = {{std::nullopt, false}, {"", true}, {"Later.", true}};

    for (const auto& [message, isTold] : cases) {
        m_backend.calls.clear();
        m_dismissed = 0;
        show({.appName = "Chess", .guardianMessage = message, .allowBypass = true});
        EXPECT_EQ(m_viewModel->isNoticeOfGuardian(), isTold);
        m_viewModel->continueAnyway();
        EXPECT_EQ(m_dismissed, 0) << "the question comes first";
        m_viewModel->askToContinue();
        m_viewModel->cancelConfirm();
        EXPECT_EQ(m_dismissed, 0);
        goOn();
        EXPECT_EQ(m_dismissed, 1);
        if (isTold)
            EXPECT_THAT(m_backend.calls, ElementsAre("reportTampering bypass_attempt: blockScreen.continue — Chess"));
        else
            EXPECT_THAT(m_backend.calls, IsEmpty());
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
