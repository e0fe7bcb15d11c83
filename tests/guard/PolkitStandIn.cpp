#include "tests/guard/PolkitStandIn.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <gtest/gtest.h>

namespace stillgate::test
{

namespace
{

constexpr auto name = "org.freedesktop.PolicyKit1";
constexpr auto path = "/org/freedesktop/PolicyKit1/Authority";

QVariant result(bool isGranted)
{
    QDBusArgument argument;
    argument.beginStructure();
    argument << isGranted << false;
    argument.beginMap(QMetaType::fromType<QString>(), QMetaType::fromType<QString>());
    argument.endMap();
    argument.endStructure();
    return QVariant::fromValue(argument);
}

} // namespace

PolkitStandIn::PolkitStandIn()
{
    auto bus = QDBusConnection::systemBus();
    EXPECT_TRUE(bus.registerVirtualObject(path, this));
    EXPECT_TRUE(bus.registerService(name));
}

PolkitStandIn::~PolkitStandIn()
{
    auto bus = QDBusConnection::systemBus();
    bus.unregisterService(name);
    bus.unregisterObject(path);
}

void PolkitStandIn::decide(bool isGranted)
{
    for (const auto& question : std::exchange(m_open, {}))
        QDBusConnection::systemBus().send(question.createReply(QVariantList{result(isGranted)}));
}

QString PolkitStandIn::introspect(const QString& /*path*/) const
{
    return {};
}

bool PolkitStandIn::handleMessage(const QDBusMessage& message, const QDBusConnection& connection)
{
    const auto arguments = message.arguments();
    if (message.member() == "CancelCheckAuthorization") {
        cancelled.push_back(arguments.value(0).toString().toStdString());
        connection.send(message.createReply());
        return true;
    }
    EXPECT_EQ(message.member(), "CheckAuthorization");
    EXPECT_EQ(message.signature(), "(sa{sv})sa{ss}us");
    const auto action = arguments.value(1).toString().toStdString();
    asked.push_back(action);
    if (isAskingAPerson && !granted.contains(action))
        m_open.push_back(message);
    else
        connection.send(message.createReply(QVariantList{result(granted.contains(action))}));
    return true;
}

} // namespace stillgate::test
