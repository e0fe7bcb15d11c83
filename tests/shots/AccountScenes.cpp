#include "Views/Account/AccountViewModel.h"
#include "tests/shots/Scene.h"
#include "tests/shots/Stage.h"

namespace stillgate::test
{

namespace
{

AccountViewModel& open(Stage& stage)
{
    return stage.openTab<AccountViewModel>(settingstab::account);
}

/// A failure, with a long address.
void failed(Stage& stage)
{
    auto& account = open(stage);
    stage.state.currentUser = SGUser{.id = "u1",
        .email = "somebody.with.a.name.that.is.long@a-department-of.the-university-of.somewhere-far-away.example.org",
        .displayName = "Ada Lovelace"};
    account.exportData();
}

void working(Stage& stage)
{
    stage.backend.hold("exportUserData");
    stage.backend.hold("deleteAccount");
    auto& account = open(stage);
    account.exportData();
    account.askToDelete();
    account.deleteAccount();
}

} // namespace

std::vector<Scene> accountScenes()
{
    return {
        {"account", "signed-in", [](Stage& stage) { open(stage); }},
        {"account", "signed-out", [](Stage& stage) { stage.openSettings(settingstab::account); }},
        {"account", "failed", failed},
        {"account", "working", working},
        {"account", "deletion", [](Stage& stage) { open(stage).askToDelete(); }},
        {"about", "web-site", [](Stage& stage) { stage.openTab(settingstab::about); }},
    };
}

} // namespace stillgate::test
