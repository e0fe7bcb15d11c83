#include "Views/Account/AccountViewModel.h"
#include "tests/shots/Scene.h"
#include "tests/shots/Stage.h"

namespace stillgate::test
{

namespace
{

constexpr int accountTab = 10;
constexpr int aboutTab = 11;

AccountViewModel& openAccount(Stage& stage)
{
    stage.openSettings(accountTab);
    return Stage::tabViewModel<AccountViewModel>();
}

void signedIn(Stage& stage)
{
    stage.signIn();
    openAccount(stage);
}

void signedOut(Stage& stage)
{
    openAccount(stage);
}

/// A failure, with a long address.
void failed(Stage& stage)
{
    stage.signIn();
    stage.state.currentUser = SGUser{.id = "u1",
        .email = "somebody.with.a.name.that.is.long@a-department-of.the-university-of.somewhere-far-away.example.org",
        .displayName = "Ada Lovelace"};
    openAccount(stage).exportData();
}

void working(Stage& stage)
{
    stage.signIn();
    stage.backend.hold("exportUserData");
    stage.backend.hold("deleteAccount");
    auto& account = openAccount(stage);
    account.exportData();
    account.askToDelete();
    account.deleteAccount();
}

void deletion(Stage& stage)
{
    stage.signIn();
    openAccount(stage).askToDelete();
}

void about(Stage& stage)
{
    stage.signIn();
    stage.openSettings(aboutTab);
}

constexpr Scene scenes[] = {
    {"account", "signed-in", signedIn},
    {"account", "signed-out", signedOut},
    {"account", "failed", failed},
    {"account", "working", working},
    {"account", "deletion", deletion},
    {"about", "web-site", about},
};

} // namespace

std::span<const Scene> accountScenes()
{
    return scenes;
}

} // namespace stillgate::test
