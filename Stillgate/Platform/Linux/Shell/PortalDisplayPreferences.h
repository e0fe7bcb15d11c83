#pragma once

#include "Platform/DisplayPreferences.h"

#include <QDBusMessage>
#include <QDBusVariant>
#include <QObject>

#include <map>

namespace stillgate
{

/// The desktop's settings as its portal gives them (org.freedesktop.portal.Settings). They come a moment after the
/// start; until then, and without a portal, motion is allowed.
class PortalDisplayPreferences final : public QObject, public DisplayPreferences
{
    Q_OBJECT

public:
    PortalDisplayPreferences();

    [[nodiscard]] bool shouldReduceMotion() const override { return m_reducesMotion; }

    [[nodiscard]] std::unique_ptr<Observation> onChange(std::function<void()> observer) override;

private Q_SLOTS:
    void settingChanged(const QString& space, const QString& key, const QDBusVariant& value);

private:
    void readAll();
    void take(const QString& space, const QString& key, const QVariant& value);

    bool m_reducesMotion = false;
    std::map<QString, bool> m_wishes; ///< whether a setting asks for less motion, by its name
    Observers<> m_change;
};

} // namespace stillgate
