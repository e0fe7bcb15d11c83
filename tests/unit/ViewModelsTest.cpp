#include "Platform/Memory/MemoryWorkspace.h"
#include "Views/Gates/ForceUpdateViewModel.h"
#include "Views/Gates/MaintenanceViewModel.h"
#include "Views/Popover/PopoverPlace.h"
#include "Views/SignIn/AuthViewModel.h"
#include "tests/support/AppStateFixture.h"

namespace stillgate
{

using namespace test;
using namespace std::chrono_literals;

class ViewModels : public AppStateFixture
{
protected:
    /// Counts how often the screen is told to look again.
    template <class ViewModel>
    void watch(ViewModel& viewModel)
    {
        QObject::connect(&viewModel, &ViewModel::changed, [this] { ++m_changes; });
    }

    int m_changes = 0;
};

TEST_F(ViewModels, signInShowsWhatTheAuthorizationDoes)
{
    using Phase = AuthViewModel::Phase;
    m_backend.deviceCode = deviceCode("one");
    m_backend.poll = DeviceCodePollResponse{.status = "pending"};
    DeviceAuthorization authorization{state(), m_backend, [](const std::string&) {}, m_time, m_time, m_log};
    AuthViewModel viewModel{authorization};
    watch(viewModel);
    const auto expectPhase = [&](Phase phase, const QString& message, bool canOpenBrowser) {
        EXPECT_EQ(viewModel.phase(), phase);
        EXPECT_EQ(viewModel.message(), message);
        EXPECT_EQ(viewModel.canOpenBrowser(), canOpenBrowser);
        EXPECT_GT(std::exchange(m_changes, 0), 0) << "the screen looks again";
    };

    m_backend.hold("requestDeviceCode");
    viewModel.appear();
    expectPhase(Phase::Waiting, "desktop.linkDevice.preparing", false);
    m_backend.release("requestDeviceCode");
    expectPhase(Phase::Waiting, "desktop.linkDevice.preparing", true);
    m_time.advance(60s);
    expectPhase(Phase::Expired, "desktop.linkDevice.expired", false);
    viewModel.tryAgain();
    expectPhase(Phase::Waiting, "desktop.linkDevice.preparing", true);
    m_backend.poll = failure(APIError::server(403, "Not here"));
    m_time.advance(5s);
    expectPhase(Phase::Failed, "Not here", true);
}

TEST_F(ViewModels, maintenanceIsToldInTheWordsOfTheBackend)
{
    SessionData session;
    MaintenanceViewModel viewModel{session};
    watch(viewModel);
    EXPECT_EQ(viewModel.message(), "extension.popup.maintenanceMsg");
    session.maintenanceMessage = "Back at nine";
    EXPECT_EQ(viewModel.message(), "Back at nine");
    EXPECT_EQ(m_changes, 1);
}

TEST_F(ViewModels, forcedUpdateNamesBothVersionsAndTheWay)
{
    MemoryWorkspace workspace;
    ForceUpdateViewModel viewModel{state(), m_bundle, workspace};
    watch(viewModel);
    EXPECT_EQ(viewModel.currentVersion(), "v1.4.0");
    EXPECT_EQ(viewModel.message(), "extension.popup.updateMsg");
    state().requiredVersion = "2.0";
    EXPECT_EQ(viewModel.minVersion(), "v2.0");
    EXPECT_EQ(m_changes, 1);

    for (const auto& url : std::vector<std::optional<std::string>>{std::nullopt, "", "http://b example"}) {
        state().forceUpdateUrl = url;
        viewModel.download();
        EXPECT_THAT(workspace.openedURLs, IsEmpty());
    }
    state().forceUpdateUrl = "https://stillgate.example/get?for=debian";
    viewModel.download();
    EXPECT_THAT(workspace.openedURLs, ElementsAre("https://stillgate.example/get?for=debian"));
}

TEST(PopoverPlace, isBesideTheAnchorAndOnTheScreen)
{
    const QSize size{360, 480};
    const QRect panelOnTop{0, 30, 1920, 1050};
    const QRect panelAtBottom{0, 0, 1920, 1050};

    const struct
    {
        QRect anchor;
        QRect available;
        QPoint place;
    } cases[] = {
        {{1000, 4, 25, 22}, panelOnTop, {832, 32}},
        {{1890, 4, 25, 22}, panelOnTop, {1560, 32}},
        {{1000, 1054, 25, 22}, panelAtBottom, {832, 568}},
        {{1000, 564, 25, 0}, panelAtBottom, {832, 570}},
        {{1000, 565, 25, 0}, panelAtBottom, {832, 79}},
        {{1000, 0, 25, 25}, panelOnTop, {832, 31}},
        {{2900, 4, 25, 22}, {1920, 0, 1280, 1024}, {2732, 32}},
        {{2000, 1100, 25, 22}, {1920, 0, 1280, 1024}, {1920, 544}},
        {{100, 100, 25, 25}, {0, 0, 300, 400}, {0, 0}},
        {{100, 300, 25, 25}, {0, 0, 800, 600}, {0, 0}},
    };

    for (const auto& [anchor, available, place] : cases) {
        const auto actual = popoverPlace(anchor, available, size);
        EXPECT_EQ(actual, QRect(place, size))
            << anchor.x() << "," << anchor.y() << " gives " << actual.x() << "," << actual.y();
    }
}

} // namespace stillgate
