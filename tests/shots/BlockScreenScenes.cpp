#include "Views/BlockScreen/BlockModalViewModel.h"
#include "tests/shots/Scene.h"
#include "tests/shots/Stage.h"

namespace stillgate::test
{

namespace
{

constexpr auto longWords =
    "We said that the games wait until the homework is done, and until you have been outside for a while. I know that "
    "it's hard to stop in the middle of something. Call me if you need anything, and we'll play together tonight. "
    "There's soup on the stove and the bread is from this morning. Mum";

BlockModal flexibleApp()
{
    return {.variant = MacBlockVariant::app, .appName = "Chess", .category = "gaming", .allowBypass = true};
}

void blockApp(Stage& stage)
{
    stage.openBlockModal(flexibleApp());
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
    modal.guardianMessage = "Let's go for a ride first!";
    modal.illustrationOverride = "ill-cycling";
    stage.openBlockModal(modal);
}

void blockAppAtLength(Stage& stage)
{
    auto modal = flexibleApp();
    modal.appName = "The Extraordinarily Long-Winded Adventure of the Seven Kingdoms, Game of the Year Edition";
    modal.guardianMessage = longWords;
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

void blockAtNight(Stage& stage)
{
    stage.openBlockModal({.variant = MacBlockVariant::sleep, .appName = "Chess", .allowBypass = true});
}

void blockForTheFamily(Stage& stage)
{
    stage.openBlockModal({.variant = MacBlockVariant::family, .appName = "Chess"});
}

void blockForTheBudget(Stage& stage)
{
    stage.openBlockModal({.variant = MacBlockVariant::budget, .appName = "Chess", .allowBypass = true});
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
    blockApp(stage);
    stage.blockModalViewModel().askToContinue();
}

constexpr Scene scenes[] = {
    {"block-screen", "app", blockApp},
    {"block-screen", "app-strict", blockAppForGood},
    {"block-screen", "app-guardian", blockAppWithGuardiansWords},
    {"block-screen", "app-at-length", blockAppAtLength},
    {"block-screen", "app-without-illustration", blockWithoutIllustration},
    {"block-screen", "app-not-composited", blockWhereNothingShinesThrough},
    {"block-screen", "website", blockSite},
    {"block-screen", "sleep", blockAtNight},
    {"block-screen", "family", blockForTheFamily},
    {"block-screen", "budget", blockForTheBudget},
    {"block-screen", "confirmation", askBeforeGoingOn},
};

} // namespace

std::span<const Scene> blockScreenScenes()
{
    return scenes;
}

} // namespace stillgate::test
