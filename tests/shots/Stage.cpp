#include "tests/shots/Stage.h"

#include <QGuiApplication>

namespace stillgate::test
{

Stage::Stage()
    : authorization(
          state, backend, [this](const std::string& url) { workspace.open(url); }, time, time, log)
    , m_windows({state, authorization, workspace, bundle, notifications, preferences, time, [] {}})
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

QQuickWindow& Stage::window()
{
    for (auto* window : QGuiApplication::topLevelWindows()) {
        if (auto* quick = qobject_cast<QQuickWindow*>(window); quick != nullptr && quick->isVisible())
            return *quick;
    }
    qFatal("the scene has opened no window");
}

} // namespace stillgate::test
