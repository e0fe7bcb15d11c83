#include "Platform/Linux/Shell/BusSingleInstance.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
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

bool BusSingleInstance::claim()
{
    auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        m_log.write("[Stillgate] No session bus: a second start isn't noticed");
        return true;
    }
    // The object first: from the moment the name is ours, somebody may call.
    bus.registerObject(objectPath, this, QDBusConnection::ExportAllSlots);
    const auto reply = bus.interface()->registerService(busName, QDBusConnectionInterface::DontQueueService);
    if (reply.isValid() && reply.value() == QDBusConnectionInterface::ServiceRegistered)
        return true;
    auto call = QDBusMessage::createMethodCall(busName, objectPath, applicationInterface, "Activate");
    call << platformData();
    bus.call(call, QDBus::Block, longestCall);
    return false;
}

std::unique_ptr<Observation> BusSingleInstance::onReopen(std::function<void()> observer)
{
    return m_reopen.add(std::move(observer));
}

void BusSingleInstance::Activate(const QVariantMap& data)
{
    if (const auto token = data.value("activation-token").toString(); !token.isEmpty())
        qputenv("XDG_ACTIVATION_TOKEN", token.toUtf8()); // Qt takes it from there with the next activation
    m_reopen.notify();
}

} // namespace stillgate
