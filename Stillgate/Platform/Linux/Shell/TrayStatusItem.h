#pragma once

#include "Platform/StatusItem.h"

#include <QMenu>
#include <QSystemTrayIcon>

namespace stillgate
{

/// StatusNotifierItem on the session bus, or the system tray of X11, whichever the desktop has. Needs a QApplication.
class TrayStatusItem final : public StatusItem
{
public:
    explicit TrayStatusItem(const QIcon& icon);

    void show(const std::string& accessibilityText, std::vector<MenuItem> items) override;
    [[nodiscard]] std::unique_ptr<Observation> onClick(std::function<void()> observer) override;
    [[nodiscard]] std::optional<ScreenRectangle> bounds() const override;

private:
    QMenu m_menu;
    QSystemTrayIcon m_icon;
    Observers<> m_click;
};

} // namespace stillgate
