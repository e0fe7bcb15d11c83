#include "Views/Account/AccountViewModel.h"

#include "Platform/Memory/MemoryPasteboard.h"
#include "Platform/Memory/MemoryWorkspace.h"
#include "Views/Account/AboutViewModel.h"
#include "tests/support/AppStateFixture.h"

#include <ranges>

namespace stillgate
{

using namespace test;

class Accounts : public AppStateFixture
{
protected:
    Accounts()
    {
        m_pasteboard.text = "before";
        m_backend.exported = UserDataExport{.user = {.id = "u1", .email = "ada@example.org"},
            .blockRules = {
                BlockRule{.id = "r1", .createdAt = Date{std::chrono::sys_days{std::chrono::year{2001} / 1 / 2}}}}};
        state().isAuthenticated = true;
    }

    AccountViewModel& shown()
    {
        if (!m_viewModel)
            m_viewModel.emplace(state(), m_backend, m_pasteboard);
        return *m_viewModel;
    }

    void confirmDeletion()
    {
        shown().askToDelete();
        shown().deleteAccount();
    }

    [[nodiscard]] auto timesCalled(std::string_view call) const { return std::ranges::count(m_backend.calls, call); }

    MemoryPasteboard m_pasteboard;
    std::optional<AccountViewModel> m_viewModel;
};

TEST_F(Accounts, exportIsCopiedAsPlainJSON)
{
    m_backend.hold("exportUserData");
    shown().exportData();
    shown().exportData();
    EXPECT_EQ(timesCalled("exportUserData"), 1) << "a second one can't start meanwhile";
    EXPECT_EQ(shown().exportTitle(), "account.exporting");

    m_backend.release("exportUserData");
    EXPECT_EQ(shown().exportTitle(), "account.exportData");
    EXPECT_EQ(shown().errorMessage(), "");
    EXPECT_TRUE(m_pasteboard.text.starts_with(R"({"user":{"id":"u1","email":"ada@example.org"},"devices":[])"))
        << m_pasteboard.text;
    EXPECT_TRUE(m_pasteboard.text.contains(R"("createdAt":86400.0)")) << m_pasteboard.text;
}

TEST_F(Accounts, exportComesAlsoWhenTheTabIsGoneButNotWhenTheSessionIs)
{
    m_backend.hold("exportUserData");
    shown().exportData();
    m_viewModel.reset();
    m_backend.release("exportUserData");
    EXPECT_NE(m_pasteboard.text, "before");

    m_pasteboard.text = "before";
    m_backend.hold("exportUserData");
    shown().exportData();
    shown().signOut();
    m_backend.release("exportUserData");
    EXPECT_EQ(m_pasteboard.text, "before");
    EXPECT_FALSE(shown().isExporting());
}

TEST_F(Accounts, failureIsOneLineThatStaysUntilTheNextAttempt)
{
    m_backend.exported = FakeBackend::unreachable();
    shown().exportData();
    EXPECT_EQ(shown().errorMessage(), "errors.generic");
    EXPECT_EQ(m_pasteboard.text, "before");
    EXPECT_FALSE(shown().isExporting());

    m_backend.hold("deleteAccount");
    confirmDeletion();
    EXPECT_EQ(shown().errorMessage(), "");
    m_backend.release("deleteAccount");
    EXPECT_EQ(shown().errorMessage(), "errors.generic");
    EXPECT_FALSE(shown().isDeleting());
    EXPECT_TRUE(state().isAuthenticated.value()) << "a failed deletion keeps the user signed in";

    m_backend.exported = UserDataExport{.user = {.email = "\xff"}};
    shown().exportData();
    EXPECT_EQ(shown().errorMessage(), "errors.generic") << "nor can that be JSON";
}

TEST_F(Accounts, deletionIsAskedForOnceAndConfirmed)
{
    shown().deleteAccount();
    shown().askToDelete();
    EXPECT_TRUE(shown().showDeleteConfirm());
    shown().cancelDelete();
    shown().deleteAccount();
    EXPECT_FALSE(shown().showDeleteConfirm() || shown().isDeleting());
    EXPECT_EQ(timesCalled("deleteAccount"), 0);

    m_backend.hold("deleteAccount");
    confirmDeletion();
    EXPECT_FALSE(shown().showDeleteConfirm());
    EXPECT_EQ(shown().deleteTitle(), "common.loading");
    confirmDeletion();
    EXPECT_FALSE(shown().showDeleteConfirm());
    EXPECT_EQ(timesCalled("deleteAccount"), 1) << "a second one can't start meanwhile";

    m_backend.accepted = {};
    m_backend.release("deleteAccount");
    EXPECT_FALSE(state().isAuthenticated.value());
    EXPECT_EQ(shown().deleteTitle(), "account.deleteAccount");
}

TEST_F(Accounts, userIsTheirAddressOrToldToSignIn)
{
    int changes = 0;
    QObject::connect(&shown(), &AccountViewModel::changed, [&] { ++changes; });
    state().currentUser = SGUser{.email = "ada@example.org", .displayName = "Ada"};
    EXPECT_EQ(shown().user(), "ada@example.org");
    shown().signOut();
    EXPECT_EQ(shown().user(), "desktop.menuBar.signInToStart");
    EXPECT_EQ(changes, 2);
    EXPECT_FALSE(state().isAuthenticated.value());
}

TEST_F(Accounts, aboutLeadsToTheWebSiteOfThisBuild)
{
    MemoryWorkspace workspace;
    AboutViewModel none{m_bundle, workspace};
    EXPECT_EQ(none.webSite(), "");
    none.openWebSite();
    EXPECT_THAT(workspace.openedURLs, IsEmpty());

    m_bundle.infoValues["STILLGATE_WEB_SITE_URL"] = "https://family.example:8443/app";
    AboutViewModel about{m_bundle, workspace};
    EXPECT_EQ(about.webSite(), "family.example");
    about.openWebSite();
    EXPECT_THAT(workspace.openedURLs, ElementsAre("https://family.example:8443/app"));
}

} // namespace stillgate
