#include "Platform/Linux/Shell/TrayStatusItem.h"

namespace stillgate
{

TrayStatusItem::TrayStatusItem(const QIcon& icon)
    : m_icon(icon)
{
    m_icon.setContextMenu(&m_menu);
    QObject::connect(&m_icon, &QSystemTrayIcon::activated, &m_icon, [this](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Trigger || reason == QSystemTrayIcon::MiddleClick)
            m_click.notify();
    });
}

void TrayStatusItem::show(const std::string& accessibilityText, std::vector<MenuItem> items)
{
    m_menu.clear();
    for (auto& item : items)
        QObject::connect(
            m_menu.addAction(QString::fromStdString(item.title)), &QAction::triggered, &m_menu, std::move(item.action));
    m_icon.setToolTip(QString::fromStdString(accessibilityText));
    m_icon.show();
}

std::unique_ptr<Observation> TrayStatusItem::onClick(std::function<void()> observer)
{
    return m_click.add(std::move(observer));
}

std::optional<ScreenRectangle> TrayStatusItem::bounds() const
{
    const auto place = m_icon.geometry();
    if (place.isEmpty())
        return std::nullopt;
    return ScreenRectangle{place.x(), place.y(), place.width(), place.height()};
}

} // namespace stillgate
