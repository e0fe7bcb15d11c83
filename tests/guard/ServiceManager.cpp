#include "tests/guard/ServiceManager.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QTimer>

#include <iostream>
#include <stdexcept>

namespace stillgate::test
{

namespace
{

constexpr auto name = "org.freedesktop.systemd1";
constexpr auto managerPath = "/org/freedesktop/systemd1";

QDBusObjectPath jobPath(uint job)
{
    return QDBusObjectPath{QString{managerPath} + "/job/" + QString::number(job)};
}

QDBusObjectPath unitPath(const QString& unit)
{
    return QDBusObjectPath{QString{managerPath} + "/unit/" + unit.toUtf8().toHex()};
}

QString unitOf(const QString& path)
{
    return QByteArray::fromHex(path.section('/', -1).toLatin1());
}

/// a(sss), empty.
QVariant noChanges()
{
    QDBusArgument changes;
    changes.beginStructure();
    changes << QString{} << QString{} << QString{};
    changes.endStructure();
    return QVariant::fromValue(changes);
}

} // namespace

ServiceManager::ServiceManager(UnitRunner& units)
    : m_units(units)
{
    m_units.onEnd = [this](const QString& unit) { reportEnd(unit); };
}

bool ServiceManager::appear()
{
    auto bus = QDBusConnection::systemBus();
    bus.connect("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.systemd1.Activator",
        "ActivationRequest", this, SLOT(activate(QString)));
    return bus.registerVirtualObject(managerPath, this, QDBusConnection::SubPath) && bus.registerService(name);
}

QString ServiceManager::introspect(const QString& /*path*/) const
{
    return {};
}

bool ServiceManager::handleMessage(const QDBusMessage& message, const QDBusConnection& connection)
{
    try {
        connection.send(message.createReply(answer(message)));
    } catch (const std::exception& problem) {
        connection.send(message.createErrorReply("org.freedesktop.systemd1.Refused", problem.what()));
    }
    return true;
}

QVariantList ServiceManager::answer(const QDBusMessage& message)
{
    const auto method = message.member();
    if (method == "StartUnit" || method == "StopUnit")
        return runJob(message);
    if (method == "EnableUnitFiles" || method == "DisableUnitFiles" || method == "MaskUnitFiles")
        return changeUnitFiles(message);
    if (method == "GetUnit")
        return {QVariant::fromValue(unitPath(message.arguments().value(0).toString()))};
    if (method == "GetUnitFileState")
        return {m_units.isEnabled(message.arguments().value(0).toString()) ? "enabled" : "disabled"};
    if (method == "Get") {
        const bool isActive = m_units.isActive(unitOf(message.path()));
        return {QVariant::fromValue(QDBusVariant{isActive ? "active" : "inactive"})};
    }
    if (method == "Subscribe" || method == "Reload")
        return {};
    throw std::runtime_error{"no method " + method.toStdString()};
}

QVariantList ServiceManager::changeUnitFiles(const QDBusMessage& message)
{
    const auto method = message.member();
    for (const auto& unit : message.arguments().value(0).toStringList()) {
        if (method == "MaskUnitFiles")
            m_units.mask(unit);
        else if (m_units.isMasked(unit))
            throw std::runtime_error{unit.toStdString() + " is masked"};
        else
            method == "EnableUnitFiles" ? m_units.enable(unit) : m_units.disable(unit);
    }
    return method == "EnableUnitFiles" ? QVariantList{true, noChanges()} : QVariantList{noChanges()};
}

QVariantList ServiceManager::runJob(const QDBusMessage& message)
{
    const auto unit = message.arguments().value(0).toString();
    QString result = "done";
    try {
        message.member() == "StartUnit" ? m_units.start(unit) : m_units.stop(unit);
    } catch (const std::exception& problem) {
        std::cerr << unit.toStdString() << ": " << problem.what() << '\n';
        result = "failed";
    }
    ++m_lastJob;
    endJob(unit, result);
    return {QVariant::fromValue(jobPath(m_lastJob))};
}

/// Ahead of the answer, or behind it: a job may end at any moment.
void ServiceManager::endJob(const QString& unit, const QString& result)
{
    auto removed = QDBusMessage::createSignal(managerPath, "org.freedesktop.systemd1.Manager", "JobRemoved");
    removed << m_lastJob << QVariant::fromValue(jobPath(m_lastJob)) << unit << result;
    if (m_lastJob % 2 == 0)
        QDBusConnection::systemBus().send(removed);
    else
        QTimer::singleShot(0, this, [removed] { QDBusConnection::systemBus().send(removed); });
}

/// Whoever waits for the service's name waits no more.
void ServiceManager::reportEnd(const QString& unit)
{
    auto failure = QDBusMessage::createTargetedSignal(
        "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.systemd1.Activator", "ActivationFailure");
    failure << unit << QString{"org.freedesktop.systemd1.Ended"} << QString{"the service has ended"};
    QDBusConnection::systemBus().send(failure);
}

void ServiceManager::activate(const QString& unit)
{
    try {
        m_units.start(unit);
    } catch (const std::exception& problem) {
        std::cerr << unit.toStdString() << ": " << problem.what() << '\n';
        reportEnd(unit);
    }
}

} // namespace stillgate::test
