#include "Views/BlockScreen/BlockModalViewModel.h"
#include "tests/shots/Scene.h"
#include "tests/shots/Stage.h"

namespace stillgate::test
{

namespace
{

BlockModal flexibleApp()
{
    return {.variant = MacBlockVariant::app, .appName = "Chess", .category = "gaming", .allowBypass = true};
}

template <MacBlockVariant variant>
void block(Stage& stage)
{
    auto modal = flexibleApp();
    modal.variant = variant;
    stage.openBlockModal(modal);
}

void blockAppForGood(Stage& stage)
{
    auto modal = flexibleApp();
    modal.allowBypass = false;
    modal.session = "Homework";
    stage.openBlockModal(modal);
}

void blockAppWithGuardiansWords(Stage& stage)
{
    auto modal = flexibleApp();
    modal.appName = "The Extraordinarily Long-Winded Adventure of the Seven Kingdoms, Game of the Year Edition";
    modal.guardianMessage =
        "We said that the games wait until the homework is done, and until you have been outside for a while. I know "
        "that it's hard to stop in the middle of something. Call me if you need anything, and we'll play together "
        "tonight. There's soup on the stove and the bread is from this morning. Mum";
    modal.illustrationOverride = "ill-cycling";
    modal.session = "Everything that has to be done before the guests arrive on Saturday";
    stage.openBlockModal(modal);
}

void blockSite(Stage& stage)
{
    stage.openBlockModal({.variant = MacBlockVariant::website,
        .appName = "Firefox",
        .domain = "video.example",
        .session = "Deep work",
        .allowBypass = true});
}

void blockWithoutIllustration(Stage& stage)
{
    stage.bundle.folder = "/nowhere";
    stage.openBlockModal(flexibleApp());
}

void blockWhereNothingShinesThrough(Stage& stage)
{
    stage.stacking.composited = false;
    stage.openBlockModal(flexibleApp());
}

void askBeforeGoingOn(Stage& stage)
{
    stage.openBlockModal(flexibleApp());
    Stage::blockModalViewModel().askToContinue();
}

} // namespace

std::vector<Scene> blockScreenScenes()
{
    return {
        {"block-screen", "app", block<MacBlockVariant::app>},
        {"block-screen", "app-strict", blockAppForGood},
        {"block-screen", "app-guardian", blockAppWithGuardiansWords},
        {"block-screen", "app-without-illustration", blockWithoutIllustration},
        {"block-screen", "app-not-composited", blockWhereNothingShinesThrough},
        {"block-screen", "website", blockSite},
        {"block-screen", "sleep", block<MacBlockVariant::sleep>},
        {"block-screen", "family", block<MacBlockVariant::family>},
        {"block-screen", "budget", block<MacBlockVariant::budget>},
        {"block-screen", "confirmation", askBeforeGoingOn},
    };
}

} // namespace stillgate::test
