#include "tests/desktop/StatusNotifierHost.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>

#include <stdexcept>

namespace stillgate::test
{

namespace
{

constexpr auto watcherName = "org.kde.StatusNotifierWatcher";
constexpr auto watcherPath = "/StatusNotifierWatcher";
constexpr auto itemInterface = "org.kde.StatusNotifierItem";
constexpr auto itemPath = "/StatusNotifierItem";
constexpr auto menuInterface = "com.canonical.dbusmenu";
constexpr auto propertiesInterface = "org.freedesktop.DBus.Properties";

/// An entry of a menu, (ia{sv}av), without those below it.
std::pair<std::string, int> entryOf(const QDBusArgument& argument)
{
    int id = 0;
    QVariantMap properties;
    argument.beginStructure();
    argument >> id >> properties;
    argument.endStructure();
    return {properties.value("label").toString().remove('_').toStdString(), id}; // "_" stands before a mnemonic
}

} // namespace

StatusNotifierHost::StatusNotifierHost()
{
    if (!m_bus.registerVirtualObject(watcherPath, this) || !m_bus.registerService(watcherName))
        throw std::runtime_error{"no session bus, or another host on it"};
}

StatusNotifierHost::~StatusNotifierHost()
{
    m_bus.unregisterService(watcherName);
    m_bus.unregisterObject(watcherPath);
}

QString StatusNotifierHost::introspect(const QString&) const
{
    return R"(<interface name="org.kde.StatusNotifierWatcher">
        <property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
        <method name="RegisterStatusNotifierItem"><arg type="s" direction="in"/></method></interface>)";
}

bool StatusNotifierHost::handleMessage(const QDBusMessage& message, const QDBusConnection& connection)
{
    if (message.member() == "RegisterStatusNotifierItem") {
        m_service = message.arguments().value(0).toString();
        return connection.send(message.createReply());
    }
    // There is one property, and a host is registered.
    return message.member() == "Get" && connection.send(message.createReply(QVariant::fromValue(QDBusVariant{true})));
}

QDBusMessage StatusNotifierHost::call(
    const QString& path, const QString& interface, const QString& method, const QVariantList& arguments) const
{
    auto message = QDBusMessage::createMethodCall(m_service, path, interface, method);
    message.setArguments(arguments);
    const auto reply = m_bus.call(message);
    if (reply.type() == QDBusMessage::ErrorMessage)
        throw std::runtime_error{(method + ": " + reply.errorMessage()).toStdString()};
    return reply;
}

QVariant StatusNotifierHost::property(const QString& name) const
{
    const auto reply = call(itemPath, propertiesInterface, "Get", {itemInterface, name});
    return reply.arguments().value(0).value<QDBusVariant>().variant();
}

bool StatusNotifierHost::hasIcon() const
{
    if (!property("IconName").toString().isEmpty())
        return true;
    const auto pictures = property("IconPixmap").value<QDBusArgument>();
    pictures.beginArray();
    return !pictures.atEnd();
}

void StatusNotifierHost::activate() const
{
    (void)call(itemPath, itemInterface, "Activate", {1270, 5});
}

QString StatusNotifierHost::menuPath() const
{
    return property("Menu").value<QDBusObjectPath>().path();
}

std::map<std::string, int> StatusNotifierHost::menu() const
{
    const auto reply = call(menuPath(), menuInterface, "GetLayout", {0, -1, QStringList{}});
    const auto root = reply.arguments().value(1).value<QDBusArgument>();
    int id = 0;
    QVariantMap properties;
    std::map<std::string, int> entries;
    root.beginStructure();
    root >> id >> properties;
    root.beginArray();
    while (!root.atEnd()) {
        QDBusVariant entry;
        root >> entry;
        entries.insert(entryOf(entry.variant().value<QDBusArgument>()));
    }
    return entries;
}

void StatusNotifierHost::choose(const std::string& entry) const
{
    auto message = QDBusMessage::createMethodCall(m_service, menuPath(), menuInterface, "Event");
    message.setArguments({menu().at(entry), "clicked", QVariant::fromValue(QDBusVariant{0}), 0U});
    m_bus.send(message);
}

} // namespace stillgate::test
