#include "tests/shots/Stage.h"

#include "Localization/L.h"
#include "Views/BlockScreen/BlockModalViewModel.h"
#include "Views/Settings/SettingsViewModel.h"

#include <QGuiApplication>
#include <QQuickItem>
#include <QQuickView>

namespace stillgate::test
{

namespace
{

template <class Visit>
void forEachItem(QQuickItem& item, Visit visit)
{
    visit(item);
    for (auto* child : item.childItems())
        forEachItem(*child, visit);
}

} // namespace

Stage::Stage()
    : authorization(
          state, backend, [this](const std::string& url) { workspace.open(url); }, time, time, log)
    , m_windows({
          .state = state,
          .deviceAuthorization = authorization,
          .ownRules = ownRules,
          .backend = backend,
          .monitor = monitor,
          .tracker = tracker,
          .workspace = workspace,
          .bundle = bundle,
          .notifications = notifications,
          .pasteboard = pasteboard,
          .displayPreferences = preferences,
          .clock = time,
          .scheduler = time,
          .host = host,
          .stacking = stacking,
          .quit = [] {},
      })
{}

void Stage::signIn()
{
    state.isAuthenticated = true;
    state.currentUser = SGUser{.id = "u1", .email = "ada@example.org", .displayName = "Ada Lovelace"};
}

void Stage::open(std::string_view windowId)
{
    m_managed.open(windowId);
}

void Stage::openPopover()
{
    m_popover = m_windows.makePopover();
    m_popover->show(std::nullopt);
}

void Stage::openSettings(int tab)
{
    m_windows.showSettings();
    notifications.post(sgNavigateToTab, {{"tab", tab}});
}

void Stage::openTab(int tab)
{
    signIn();
    openSettings(tab);
}

void Stage::openBlockModal(const BlockModal& modal)
{
    m_blockModal.showIn(m_windows);
    m_blockModal.showBlockModal(modal, [] {});
}

BlockModalViewModel& Stage::blockModalViewModel()
{
    const auto& view = dynamic_cast<QQuickView&>(window());
    return *view.rootObject()->property("viewModel").value<BlockModalViewModel*>();
}

QObject& Stage::openTabViewModel()
{
    const auto& view = dynamic_cast<QQuickView&>(window());
    return *view.rootObject()->property("viewModel").value<SettingsViewModel*>()->tabViewModel();
}

void Stage::expandAllRows()
{
    window().grabWindow(); // the rows come with a frame
    forEachItem(*window().contentItem(), [](QQuickItem& item) {
        if (item.property("isExpanded").isValid())
            item.setProperty("isExpanded", true);
    });
}

void Stage::press(const std::string& key)
{
    const auto text = QString::fromStdString(L.localized(key));
    forEachItem(*window().contentItem(), [&](QQuickItem& item) {
        if (item.inherits("QQuickAbstractButton") && item.property("text") == text)
            QMetaObject::invokeMethod(&item, "clicked");
    });
}

QQuickWindow& Stage::window()
{
    for (auto* window : QGuiApplication::topLevelWindows()) {
        if (auto* quick = qobject_cast<QQuickWindow*>(window); quick != nullptr && quick->isVisible())
            return *quick;
    }
    qFatal("the scene has opened no window");
}

} // namespace stillgate::test
