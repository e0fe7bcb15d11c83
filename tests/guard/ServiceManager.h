#pragma once

#include "tests/guard/UnitRunner.h"

#include <QDBusMessage>
#include <QDBusVirtualObject>

namespace stillgate::test
{

/// org.freedesktop.systemd1 on the system bus, as far as the guard and the bus itself use it.
class ServiceManager final : public QDBusVirtualObject
{
    Q_OBJECT

public:
    explicit ServiceManager(UnitRunner& units);

    /// Whether the name on the bus is ours now.
    [[nodiscard]] bool appear();

    [[nodiscard]] QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

private Q_SLOTS:
    /// The bus wants a service that the activation file of somebody's call names.
    void activate(const QString& unit);

private:
    [[nodiscard]] QVariantList answer(const QDBusMessage& message);
    [[nodiscard]] QVariantList changeUnitFiles(const QDBusMessage& message);
    [[nodiscard]] QVariantList runJob(const QDBusMessage& message);
    void reportEnd(const QString& unit);
    void endJob(const QString& unit, const QString& result);

    UnitRunner& m_units;
    uint m_lastJob = 0;
};

} // namespace stillgate::test
