#include "Platform/Linux/Shell/BusUserNotifications.h"
#include "tests/support/Waiting.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <gmock/gmock.h>

namespace stillgate
{

using namespace test;

namespace
{

/// Whoever shows notifications on a desktop, on a connection of its own.
class NotificationDaemon final : public QDBusVirtualObject
{
public:
    NotificationDaemon()
    {
        if (!m_bus.registerVirtualObject("/org/freedesktop/Notifications", this) ||
            !m_bus.registerService("org.freedesktop.Notifications"))
            throw std::runtime_error{"no session bus, or another daemon on it"};
    }

    ~NotificationDaemon() override { QDBusConnection::disconnectFromBus(connectionName); }

    [[nodiscard]] QString introspect(const QString&) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection&) override
    {
        received.push_back(message);
        return true; // without an answer, as one that hangs
    }

    std::vector<QDBusMessage> received;

private:
    static constexpr auto connectionName = "daemon";
    QDBusConnection m_bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, connectionName);
};

} // namespace

TEST(UserNotifications, areShownWithoutASoundAndWithoutWaiting)
{
    BusUserNotifications notifications;
    notifications.post("Nobody", "is there to show it.");

    const NotificationDaemon daemon;
    notifications.post("Stillgate", "Chess & <b>poker</b>");
    ASSERT_TRUE(becomes([&] { return !daemon.received.empty(); }));
    const auto& call = daemon.received.front();
    EXPECT_EQ(call.interface(), "org.freedesktop.Notifications");
    EXPECT_EQ(call.member(), "Notify");
    ASSERT_EQ(call.signature(), "susssasa{sv}i");
    const auto arguments = call.arguments();
    EXPECT_EQ(arguments.at(0).toString(), "Stillgate");
    EXPECT_EQ(arguments.at(3).toString(), "Stillgate");
    EXPECT_EQ(arguments.at(4).toString(), "Chess &amp; &lt;b&gt;poker&lt;/b&gt;") << "a body is markup";
    const auto hints = qdbus_cast<QVariantMap>(arguments.at(6));
    EXPECT_EQ(hints.value("desktop-entry").toString(), "com.stillgate.Stillgate");
    EXPECT_TRUE(hints.value("suppress-sound").toBool());
}

} // namespace stillgate
