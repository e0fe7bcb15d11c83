#include "Guard/SystemdUnits.h"

#include "Guard/BusCalls.h"

#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QTimer>

namespace stillgate::guard
{

namespace
{

constexpr auto systemd = "org.freedesktop.systemd1";
constexpr auto managerPath = "/org/freedesktop/systemd1";
constexpr auto managerInterface = "org.freedesktop.systemd1.Manager";

/// Longer than any of our units takes. Whoever waits for its turn behind it must not wait for ever.
constexpr std::chrono::minutes limit{2};

QDBusMessage managerCall(const char* method)
{
    return QDBusMessage::createMethodCall(systemd, managerPath, managerInterface, method);
}

QStringList qtNames(const std::vector<std::string>& units)
{
    QStringList names;
    for (const auto& unit : units)
        names.append(QString::fromStdString(unit));
    return names;
}

Task<Result<void>> callManager(QDBusMessage call)
{
    const auto reply = co_await callOnBus(call, limit);
    if (!reply)
        co_return std::unexpected{reply.error()};
    co_return Result<void>{};
}

/// EnableUnitFiles and MaskUnitFiles.
Task<Result<void>> link(const char* method, std::vector<std::string> units, bool untilReboot)
{
    constexpr bool replaceLinks = true;
    auto call = managerCall(method);
    call << qtNames(units) << untilReboot << replaceLinks;
    if (const auto changed = co_await callManager(call); !changed)
        co_return changed;
    co_return co_await callManager(managerCall("Reload"));
}

/// What counts is how things are afterwards: the call fails for units that don't exist or are masked.
Task<Result<void>> disable(std::string unit)
{
    constexpr bool untilReboot = false;
    auto call = managerCall("DisableUnitFiles");
    call << qtNames({unit}) << untilReboot;
    (void)co_await callOnBus(call, limit);
    auto find = managerCall("GetUnitFileState");
    find << QString::fromStdString(unit);
    const auto state = co_await callOnBus(find, limit);
    if (state && state->value(0).toString() == "enabled")
        co_return failure(SystemFailure{"disable " + unit});
    co_return Result<void>{};
}

} // namespace

SystemdUnits::SystemdUnits()
{
    QDBusConnection::systemBus().connect(
        systemd, managerPath, managerInterface, "JobRemoved", this, SLOT(noteRemovedJob(QDBusMessage)));
}

Task<Result<void>> SystemdUnits::enableAndStart(std::vector<std::string> units)
{
    if (const auto enabled = co_await link("EnableUnitFiles", units, false); !enabled)
        co_return enabled;
    for (const auto& unit : units) {
        if (const auto started = co_await runJob("StartUnit", unit); !started)
            co_return started;
    }
    co_return Result<void>{};
}

Task<Result<void>> SystemdUnits::stopAndDisable(std::vector<std::string> units)
{
    for (const auto& unit : units) {
        if (!co_await isActive(unit))
            continue;
        if (const auto stopped = co_await runJob("StopUnit", unit); !stopped)
            co_return stopped;
    }
    for (const auto& unit : units) {
        if (const auto disabled = co_await disable(unit); !disabled)
            co_return disabled;
    }
    co_return co_await callManager(managerCall("Reload"));
}

Task<Result<void>> SystemdUnits::mask(std::vector<std::string> units)
{
    return link("MaskUnitFiles", std::move(units), true);
}

Task<bool> SystemdUnits::isActive(std::string unit)
{
    auto find = managerCall("GetUnit"); // an error for one that isn't loaded, and so isn't active
    find << QString::fromStdString(unit);
    const auto found = co_await callOnBus(find, limit);
    if (!found || found->isEmpty())
        co_return false;
    auto get = QDBusMessage::createMethodCall(
        systemd, found->front().value<QDBusObjectPath>().path(), "org.freedesktop.DBus.Properties", "Get");
    get << QString{"org.freedesktop.systemd1.Unit"} << QString{"ActiveState"};
    const auto state = co_await callOnBus(get, limit);
    if (!state || state->isEmpty())
        co_return false;
    const auto text = state->front().value<QDBusVariant>().variant().toString();
    // One that is on its way, or is about to be restarted, is not inactive: stopping it means something.
    co_return text == "active" || text == "activating" || text == "reloading";
}

/// A signal (u id, o job, s unit, s result).
void SystemdUnits::noteRemovedJob(const QDBusMessage& signal)
{
    if (m_callsUnderWay == 0 || signal.signature() != "uoss")
        return;
    const auto ended = job(signal.arguments()[1].value<QDBusObjectPath>().path());
    ended->result = signal.arguments()[3].toString();
    ended->ended.happen();
}

Task<Result<void>> SystemdUnits::runJob(const char* method, std::string unit)
{
    ++m_callsUnderWay;
    // Without a subscription systemd tells nobody when a job ends. A second one by the same connection changes nothing.
    (void)co_await callOnBus(managerCall("Subscribe"), limit);
    auto call = managerCall(method);
    call << QString::fromStdString(unit) << QString{"replace"};
    const auto reply = co_await callOnBus(call, limit);
    QString result;
    if (reply && !reply->isEmpty()) {
        const auto own = job(reply->front().value<QDBusObjectPath>().path());
        QTimer::singleShot(limit, [own] { own->ended.happen(); });
        co_await own->ended;
        result = own->result;
    }
    if (--m_callsUnderWay == 0)
        m_jobs.clear();
    if (!reply)
        co_return std::unexpected{reply.error()};
    if (result != "done")
        co_return failure(SystemFailure{std::string{method} + " " + unit + ": " + result.toStdString()});
    co_return Result<void>{};
}

std::shared_ptr<SystemdUnits::Job> SystemdUnits::job(const QString& path)
{
    auto& slot = m_jobs[path];
    if (!slot)
        slot = std::make_shared<Job>();
    return slot;
}

} // namespace stillgate::guard
