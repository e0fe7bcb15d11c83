#include "Platform/Linux/Shell/BusSingleInstance.h"

#include <QDBusConnection>
#include <QDBusMessage>

namespace stillgate
{

namespace
{

constexpr auto busName = "com.stillgate.Stillgate";
constexpr auto objectPath = "/com/stillgate/Stillgate";
constexpr auto applicationInterface = "org.freedesktop.Application";

/// One that hangs must not make its successor hang.
constexpr int longestCall = 2000; // ms

constexpr qsizetype longestToken = 256;

QVariantMap platformData()
{
    // With it, a window manager that keeps windows from stealing the focus lets the other process take it.
    const auto token = qEnvironmentVariable("XDG_ACTIVATION_TOKEN");
    return token.isEmpty() ? QVariantMap{} : QVariantMap{{"activation-token", token}};
}

} // namespace

BusSingleInstance::BusSingleInstance(Log& log)
    : m_log(log)
{}

BusSingleInstance::~BusSingleInstance()
{
    QDBusConnection::sessionBus().unregisterObject(objectPath);
}

void BusSingleInstance::listen()
{
    auto bus = QDBusConnection::sessionBus();
    // The object first: from the moment the name is ours, somebody may call.
    bus.registerObject(objectPath, this, QDBusConnection::ExportAllSlots);
    if (!bus.registerService(busName))
        m_log.write("[Stillgate] No name on the session bus: a second start can't bring this one forward");
}

bool BusSingleInstance::reopenOther()
{
    auto call = QDBusMessage::createMethodCall(busName, objectPath, applicationInterface, "Activate");
    call << platformData();
    return QDBusConnection::sessionBus().call(call, QDBus::Block, longestCall).type() == QDBusMessage::ReplyMessage;
}

std::unique_ptr<Observation> BusSingleInstance::onReopen(std::function<void()> observer)
{
    return m_reopen.add(std::move(observer));
}

void BusSingleInstance::Activate(const QVariantMap& data)
{
    // Qt takes the token from the environment. It must not stay there: children get it, and a long one keeps every
    // child from starting.
    const auto token = data.value("activation-token").toString().toLatin1();
    if (!token.isEmpty() && token.size() <= longestToken)
        qputenv("XDG_ACTIVATION_TOKEN", token);
    m_reopen.notify();
    qunsetenv("XDG_ACTIVATION_TOKEN");
}

} // namespace stillgate
