#include "tests/support/AccessibilityBus.h"

#include "tests/shots/Stage.h"

#include <gmock/gmock.h>

namespace stillgate::test
{

namespace
{

using Role = AccessibilityBus::Role;

/// Qt asks once, when the application starts, whether a screen reader listens.
const bool isAlwaysTold = qputenv("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1");

/// What a program tells comes a moment after it was asked to tell it.
AccessibilityBus::Object awaitWindow(const AccessibilityBus& bus)
{
    const QDeadlineTimer limit{std::chrono::seconds{10}};
    while (!limit.hasExpired()) {
        if (const auto application = bus.application(QCoreApplication::applicationPid()))
            if (const auto window = bus.find(*application, Role::Frame, "Sign In"))
                return *window;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 50);
    }
    throw std::runtime_error{"no window has come to the accessibility bus"};
}

} // namespace

TEST(AccessibilityBus, signInCanBeHeardAndPressed)
{
    ASSERT_TRUE(isAlwaysTold);
    Stage stage;
    stage.backend.deviceCode = DeviceCodeResponse{.deviceCode = "one",
        .userCode = "AB",
        .verificationUrl = "https://stillgate.example/link",
        .verificationUrlComplete = std::nullopt,
        .expiresIn = 60,
        .interval = 5};
    stage.backend.poll = DeviceCodePollResponse{.status = "pending"};
    stage.open(windowid::auth);
    const AccessibilityBus bus;

    const auto window = awaitWindow(bus);
    EXPECT_TRUE(bus.find(window, Role::Heading, "desktop.linkDevice.title"));
    EXPECT_TRUE(bus.find(window, Role::Label, "desktop.linkDevice.subtitle"));
    EXPECT_TRUE(bus.find(window, Role::Label, "desktop.linkDevice.preparing"));
    const auto button = bus.find(window, Role::PushButton, "desktop.linkDevice.openBrowser");
    ASSERT_TRUE(button);
    EXPECT_TRUE(bus.is(*button, AccessibilityBus::State::Focusable));
    EXPECT_TRUE(bus.doAction(*button));
    EXPECT_THAT(stage.workspace.openedURLs, testing::ElementsAre(testing::HasSubstr("user_code=AB")));
}

} // namespace stillgate::test
