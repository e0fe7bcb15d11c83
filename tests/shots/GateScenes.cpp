#include "tests/shots/Scene.h"
#include "tests/shots/Stage.h"

namespace stillgate::test
{

namespace
{

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

std::vector<Scene> gateScenes()
{
    return {
        {"maintenance", "default-words", [](Stage& stage) { stage.open(windowid::maintenance); }},
        {"maintenance", "at-length", maintainAtLength},
        {"force-update", "default-words", forceUpdate},
        {"force-update", "at-length", forceUpdateAtLength},
        {"force-update", "without-illustration", forceUpdateWithoutIllustration},
    };
}

} // namespace stillgate::test
