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

} // namespace

std::vector<Scene> signInScenes()
{
    return {
        {"sign-in", "waiting-for-code", waitForCode},
        {"sign-in", "waiting-for-approval", waitForApproval},
        {"sign-in", "expired", expire},
        {"sign-in", "failed", failAtLength},
        {"sign-in", "no-server", [](Stage& stage) { stage.open(windowid::auth); }},
    };
}

} // namespace stillgate::test
