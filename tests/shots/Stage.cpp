#include "tests/shots/Stage.h"

#include "Views/BlockScreen/BlockModalViewModel.h"

#include <QGuiApplication>
#include <QQuickItem>
#include <QQuickView>

namespace stillgate::test
{

Stage::Stage()
    : authorization(
          state, backend, [this](const std::string& url) { workspace.open(url); }, time, time, log)
    , m_windows({state, authorization, workspace, bundle, notifications, preferences, time, host, stacking, [] {}})
{}

void Stage::open(std::string_view windowId)
{
    m_managed.open(windowId);
}

void Stage::openPopover()
{
    m_popover = m_windows.makePopover();
    m_popover->show(std::nullopt);
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

QQuickWindow& Stage::window()
{
    for (auto* window : QGuiApplication::topLevelWindows()) {
        if (auto* quick = qobject_cast<QQuickWindow*>(window); quick != nullptr && quick->isVisible())
            return *quick;
    }
    qFatal("the scene has opened no window");
}

} // namespace stillgate::test
