#include "tests/shots/Scene.h"
#include "tests/shots/Stage.h"

namespace stillgate::test
{

namespace
{

using namespace std::chrono_literals;

void waitForCode(Stage& stage)
{
    stage.backend.hold("requestDeviceCode");
    stage.open(windowid::auth);
}

void waitForApproval(Stage& stage)
{
    stage.backend.deviceCode = DeviceCodeResponse{.deviceCode = "one",
        .userCode = "ABCD-1234",
        .verificationUrl = "https://stillgate.example/link",
        .verificationUrlComplete = std::nullopt,
        .expiresIn = 60,
        .interval = 5};
    stage.backend.poll = DeviceCodePollResponse{.status = "pending"};
    stage.open(windowid::auth);
}

void expire(Stage& stage)
{
    waitForApproval(stage);
    stage.time.advance(60s);
}

void failAtLength(Stage& stage)
{
    waitForApproval(stage);
    stage.backend.poll = failure(APIError::server(403,
        "The request could not be completed because the service behind it didn’t answer in time. This happens when "
        "very many people sign in at once, and passes by itself within a few minutes. If it lasts longer, see "
        "https://status.stillgate.example/incidents/2026/11/authorization-service-responds-slowly-or-not-at-all "
        "for what is known, and write to us with the number 7f3a9c41-52d8-4e0b-9a6e-d1c0b8e2f7aa."));
    stage.time.advance(5s);
}

constexpr auto longWords =
    "We are moving to new machines tonight. Everything that is blocked on your devices stays blocked, and what your "
    "devices count in the meantime arrives later. Signing in, new rules and the overview come back step by step, as "
    "soon as each of them has been checked: sign-in first, then the rules, and the overview at the end. We expect to "
    "be done at about six in the morning, Istanbul time, and say so here if it takes longer. Thank you for your "
    "patience, and good night!";

void maintainAtLength(Stage& stage)
{
    stage.state.maintenanceMessage = longWords;
    stage.open(windowid::maintenance);
}

void forceUpdate(Stage& stage)
{
    stage.state.requiredVersion = "2.0.0";
    stage.open(windowid::forceUpdate);
}

void forceUpdateAtLength(Stage& stage)
{
    stage.state.forceUpdateMessage = longWords;
    stage.state.requiredVersion = "2026.11.30-rc.12+20261130";
    stage.bundle.version = "2025.10.12-beta.3+20251012";
    stage.open(windowid::forceUpdate);
}

void forceUpdateWithoutIllustration(Stage& stage)
{
    stage.bundle.folder = "/nowhere";
    forceUpdate(stage);
}

} // namespace

/// Of the windows ahead of a session.
std::vector<Scene> gateScenes()
{
    return {
        {"sign-in", "waiting-for-code", waitForCode},
        {"sign-in", "waiting-for-approval", waitForApproval},
        {"sign-in", "expired", expire},
        {"sign-in", "failed", failAtLength},
        {"sign-in", "no-server", [](Stage& stage) { stage.open(windowid::auth); }},
        {"maintenance", "default-words", [](Stage& stage) { stage.open(windowid::maintenance); }},
        {"maintenance", "at-length", maintainAtLength},
        {"force-update", "default-words", forceUpdate},
        {"force-update", "at-length", forceUpdateAtLength},
        {"force-update", "without-illustration", forceUpdateWithoutIllustration},
    };
}

} // namespace stillgate::test
