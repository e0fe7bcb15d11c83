#pragma once

#include "App/Windows.h"
#include "Views/Windows/WindowServices.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickView>

namespace stillgate
{

class ContentWindow;

/// Windows by Qt Quick. The engine comes with the first of them: a machine that never opens one never pays for it.
class QuickWindows final : public WindowFactory
{
public:
    explicit QuickWindows(WindowServices services);
    ~QuickWindows() override;

    [[nodiscard]] std::unique_ptr<Window> makeWindow(const WindowDescription& description) override;
    [[nodiscard]] std::unique_ptr<Popover> makePopover() override;
    void showSettings() override;
    void prepareBlockModal() override;
    [[nodiscard]] std::unique_ptr<Window> makeBlockModal(
        const BlockModal& modal, const BlockModalActions& actions) override;

private:
    QQmlEngine& engine();
    void followMotionPreference();

    WindowServices m_services;
    std::unique_ptr<QQmlEngine> m_engine;
    std::unique_ptr<QQmlComponent> m_blockModal; ///< keeps its QML loaded
    std::unique_ptr<ContentWindow> m_settings;   ///< while it is open
    std::unique_ptr<Observation> m_preferencesChange;
};

} // namespace stillgate
