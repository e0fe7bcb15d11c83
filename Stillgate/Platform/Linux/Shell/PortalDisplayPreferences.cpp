#include "Platform/Linux/Shell/PortalDisplayPreferences.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include <algorithm>

namespace stillgate
{

namespace
{

constexpr auto portalService = "org.freedesktop.portal.Desktop";
constexpr auto portalPath = "/org/freedesktop/portal/desktop";
constexpr auto settingsInterface = "org.freedesktop.portal.Settings";

using SettingsOfSpace = QMap<QString, QVariantMap>;

/// Whether a setting asks for less motion; nothing for a setting of something else.
std::optional<bool> wishOf(const QString& name, const QVariant& value)
{
    if (name == "org.freedesktop.appearance reduced-motion")
        return value.toUInt() == 1;
    if (name == "org.gnome.desktop.interface enable-animations")
        return !value.toBool();
    if (name == "org.kde.kdeglobals.KDE AnimationDurationFactor") {
        bool isNumber = false;
        const bool isZero = value.toString().toDouble(&isNumber) == 0;
        return isNumber && isZero;
    }
    return std::nullopt;
}

} // namespace

PortalDisplayPreferences::PortalDisplayPreferences()
{
    auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    bus.connect(portalService, portalPath, settingsInterface, "SettingChanged", this,
        SLOT(settingChanged(QString, QString, QDBusVariant)));
    readAll();
}

void PortalDisplayPreferences::readAll()
{
    auto call = QDBusMessage::createMethodCall(portalService, portalPath, settingsInterface, "ReadAll");
    call << QStringList{"org.freedesktop.appearance", "org.gnome.desktop.interface", "org.kde.kdeglobals.KDE"};
    auto* watcher = new QDBusPendingCallWatcher{QDBusConnection::sessionBus().asyncCall(call), this};
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        const QDBusPendingReply<> reply = *watcher;
        if (reply.isError() || reply.reply().arguments().isEmpty())
            return; // no portal
        const auto spaces = qdbus_cast<SettingsOfSpace>(reply.reply().arguments().first());
        for (auto space = spaces.begin(); space != spaces.end(); ++space) {
            for (auto setting = space->begin(); setting != space->end(); ++setting)
                take(space.key(), setting.key(), setting.value());
        }
    });
}

void PortalDisplayPreferences::settingChanged(const QString& space, const QString& key, const QDBusVariant& value)
{
    take(space, key, value.variant());
}

void PortalDisplayPreferences::take(const QString& space, const QString& key, const QVariant& value)
{
    const auto name = space + ' ' + key;
    const auto wish = wishOf(name, value);
    if (!wish)
        return;
    m_wishes[name] = *wish;
    const bool reducesMotion = std::ranges::any_of(m_wishes, [](const auto& entry) { return entry.second; });
    if (std::exchange(m_reducesMotion, reducesMotion) != reducesMotion)
        m_change.notify();
}

std::unique_ptr<Observation> PortalDisplayPreferences::onChange(std::function<void()> observer)
{
    return m_change.add(std::move(observer));
}

} // namespace stillgate
