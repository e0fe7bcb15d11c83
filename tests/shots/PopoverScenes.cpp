#include "tests/shots/Scene.h"
#include "tests/shots/Stage.h"

namespace stillgate::test
{

namespace
{

void signedOut(Stage& stage)
{
    stage.openPopover();
}

void protectedSession(Stage& stage)
{
    stage.state.isAuthenticated = true;
    stage.openPopover();
}

void unprotectedSession(Stage& stage)
{
    stage.state.isBlockingActive = false;
    protectedSession(stage);
}

void offlineSession(Stage& stage)
{
    stage.state.isOffline = true;
    protectedSession(stage);
}

constexpr Scene scenes[] = {
    {"popover", "signed-out", signedOut},
    {"popover", "protected", protectedSession},
    {"popover", "not-protected", unprotectedSession},
    {"popover", "offline", offlineSession},
};

} // namespace

std::span<const Scene> popoverScenes()
{
    return scenes;
}

} // namespace stillgate::test
