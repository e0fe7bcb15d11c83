#include "tests/support/AccessibilityBus.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCall>
#include <QDBusReply>
#include <QDBusVariant>
#include <QDeadlineTimer>

#include <utility>

namespace stillgate::test
{

QDBusArgument& operator<<(QDBusArgument& argument, const AccessibilityBus::Object& object)
{
    argument.beginStructure();
    argument << object.service << object.path;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, AccessibilityBus::Object& object)
{
    argument.beginStructure();
    argument >> object.service >> object.path;
    argument.endStructure();
    return argument;
}

namespace
{

using Object = AccessibilityBus::Object;

constexpr auto connectionName = "accessibility";
constexpr auto accessible = "org.a11y.atspi.Accessible";
constexpr auto properties = "org.freedesktop.DBus.Properties";

QDBusMessage call(const QDBusConnection& connection, const Object& object, const char* interface, const char* method,
    const QVariantList& arguments = {})
{
    auto message = QDBusMessage::createMethodCall(object.service, object.path.path(), interface, method);
    message.setArguments(arguments);
    const QDBusPendingCall pending = connection.asyncCall(message);
    const QDeadlineTimer limit{std::chrono::seconds{10}};
    while (!pending.isFinished() && !limit.hasExpired())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 50);
    return pending.reply();
}

QVariant property(const QDBusConnection& connection, const Object& object, const char* interface, const char* name)
{
    const QDBusReply<QDBusVariant> reply = call(connection, object, properties, "Get", {interface, name});
    return reply.value().variant();
}

Object launcher()
{
    return {"org.a11y.Bus", QDBusObjectPath{"/org/a11y/bus"}};
}

QString address()
{
    const QDBusReply<QString> reply = call(QDBusConnection::sessionBus(), launcher(), "org.a11y.Bus", "GetAddress");
    return reply.value();
}

void setIsEnabled(bool isEnabled)
{
    const auto value = QVariant::fromValue(QDBusVariant{isEnabled});
    call(QDBusConnection::sessionBus(), launcher(), properties, "Set", {"org.a11y.Status", "IsEnabled", value});
}

} // namespace

AccessibilityBus::AccessibilityBus()
    : m_connection(QDBusConnection::connectToBus(address(), connectionName))
{
    qDBusRegisterMetaType<Object>();
    setIsEnabled(true);
}

AccessibilityBus::~AccessibilityBus()
{
    setIsEnabled(false);
    QDBusConnection::disconnectFromBus(connectionName);
}

std::optional<AccessibilityBus::Object> AccessibilityBus::application(qint64 processId) const
{
    const Object registry{"org.a11y.atspi.Registry", QDBusObjectPath{"/org/a11y/atspi/accessible/root"}};
    const Object bus{"org.freedesktop.DBus", QDBusObjectPath{"/org/freedesktop/DBus"}};
    for (const auto& application : children(registry)) {
        const QDBusReply<unsigned> owner =
            call(m_connection, bus, "org.freedesktop.DBus", "GetConnectionUnixProcessID", {application.service});
        if (owner.value() == processId)
            return application;
    }
    return std::nullopt;
}

std::vector<AccessibilityBus::Object> AccessibilityBus::children(const Object& object) const
{
    const auto reply = call(m_connection, object, accessible, "GetChildren");
    if (reply.type() != QDBusMessage::ReplyMessage)
        return {};
    const auto list = qdbus_cast<QList<Object>>(reply.arguments().constFirst());
    return {list.begin(), list.end()};
}

QString AccessibilityBus::name(const Object& object) const
{
    return property(m_connection, object, accessible, "Name").toString();
}

AccessibilityBus::Role AccessibilityBus::role(const Object& object) const
{
    const QDBusReply<unsigned> reply = call(m_connection, object, accessible, "GetRole");
    return Role{reply.value()};
}

bool AccessibilityBus::is(const Object& object, State state) const
{
    const auto reply = call(m_connection, object, accessible, "GetState");
    if (reply.type() != QDBusMessage::ReplyMessage)
        return false;
    const auto bits = qdbus_cast<QList<unsigned>>(reply.arguments().constFirst());
    return !bits.isEmpty() && (bits.constFirst() >> std::to_underlying(state) & 1) != 0;
}

bool AccessibilityBus::doAction(const Object& object) const
{
    const QDBusReply<bool> reply = call(m_connection, object, "org.a11y.atspi.Action", "DoAction", {0});
    return reply.value();
}

bool AccessibilityBus::takeFocus(const Object& object) const
{
    const QDBusReply<bool> reply = call(m_connection, object, "org.a11y.atspi.Component", "GrabFocus");
    return reply.value();
}

std::optional<AccessibilityBus::Object> AccessibilityBus::find(
    const Object& root, const std::function<bool(const Object&)>& isWanted) const
{
    for (const auto& child : children(root)) {
        if (isWanted(child))
            return child;
        if (const auto found = find(child, isWanted))
            return found;
    }
    return std::nullopt;
}

std::optional<AccessibilityBus::Object> AccessibilityBus::find(
    const Object& root, Role wantedRole, const QString& wantedName) const
{
    return find(root, [&](const Object& each) { return role(each) == wantedRole && name(each) == wantedName; });
}

} // namespace stillgate::test
