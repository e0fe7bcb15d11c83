#include "Platform/Linux/Shell/BusUserNotifications.h"

#include <QDBusConnection>
#include <QDBusMessage>

namespace stillgate
{

namespace
{

constexpr auto service = "org.freedesktop.Notifications";
constexpr auto path = "/org/freedesktop/Notifications";

constexpr auto applicationName = "Stillgate";
constexpr auto iconName = "stillgate";
constexpr uint nothingToReplace = 0;
constexpr int asLongAsTheDesktopLikes = -1;

} // namespace

void BusUserNotifications::post(const std::string& title, const std::string& body)
{
    auto call = QDBusMessage::createMethodCall(service, path, service, "Notify");
    const QVariantMap hints{{"desktop-entry", "com.stillgate.Stillgate"}, {"suppress-sound", true}};
    const QStringList noActions;
    // A body, other than a title, is markup.
    call << applicationName << nothingToReplace << iconName << QString::fromStdString(title)
         << QString::fromStdString(body).toHtmlEscaped() << noActions << hints << asLongAsTheDesktopLikes;
    QDBusConnection::sessionBus().send(call); // which waits for no answer
}

} // namespace stillgate
