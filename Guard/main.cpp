#include "Guard/DirectUnits.h"
#include "Guard/GuardObject.h"
#include "Guard/Leftovers.h"
#include "Guard/Removal.h"
#include "Guard/SystemdUnits.h"
#include "GuardVersion.h"
#include "Platform/HostsBlock.h"
#include "Platform/Linux/LinuxChildProcess.h"
#include "Platform/Linux/LinuxFileManager.h"
#include "Platform/Linux/LinuxHost.h"
#include "Platform/Linux/ScriptHostsFileWriter.h"
#include "Platform/Linux/StandardErrorLog.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>

#include <csignal>
#include <iostream>
#include <sys/stat.h>
#include <sysexits.h>

namespace stillgate::guard
{

namespace
{

constexpr auto usage = R"(Usage: stillgate-guard [--restore | --version | --help]

Without an option, the service com.stillgate.Guard of the system bus. It is started when somebody calls it, and ends
when nobody has for half a minute.

  --restore   end the protection of every user, and leave no trace of it: for the removal of the program
)";

constexpr auto stateFolder = "/var/lib/stillgate";
constexpr auto proxyStateFolder = "/var/lib/stillgate-dnsproxy";

/// What both ways to run it work with.
struct Machine
{
    LinuxFileManager files;
    LinuxChildProcess children;
    LinuxHost host;
    StandardErrorLog log;
    ScriptHostsFileWriter hostsFile{hostsPath, files, children, host};
};

/// Ends the program once nobody has called for a while. The name goes first: what was sent to it before is answered,
/// and for that it is taken again.
void endWhenIdle(GuardObject& object, QTimer& timer, const char* busName)
{
    timer.setSingleShot(true);
    timer.setInterval(std::chrono::seconds{30});
    QObject::connect(&object, &GuardObject::callBegan, &timer, &QTimer::stop);
    QObject::connect(&object, &GuardObject::becameIdle, &timer, qOverload<>(&QTimer::start));
    QObject::connect(&timer, &QTimer::timeout, &object, [&object, &timer, busName] {
        auto bus = QDBusConnection::systemBus();
        bus.unregisterService(busName);
        QCoreApplication::processEvents();
        if (object.isIdle() && !timer.isActive())
            QCoreApplication::quit();
        else
            bus.registerService(busName);
    });
    timer.start();
}

int serve()
{
    constexpr auto busName = "com.stillgate.Guard";
    constexpr auto objectPath = "/com/stillgate/Guard";
    auto bus = QDBusConnection::systemBus();
    Machine machine;
    if (!bus.isConnected()) {
        machine.log.write("[Guard] There is no system bus");
        return EX_UNAVAILABLE;
    }
    const std::filesystem::path state{stateFolder};
    Records records{state / "guard", machine.host.name(), machine.files, machine.log};
    GroupFolders folders{state / "group", machine.children};
    SystemdUnits units;
    PolkitAuthority authority;
    Protection protection{{records, folders, machine.hostsFile, units, authority, machine.files, machine.host}};
    runDetached(removeLeftovers(&machine.children, state));
    runDetached(protection.settle());

    GuardObject object{protection};
    QTimer idle;
    endWhenIdle(object, idle, busName);
    // The object first: from the moment the name is ours, somebody may call.
    if (!bus.registerObject(objectPath, &object, QDBusConnection::ExportAllSlots) || !bus.registerService(busName)) {
        machine.log.write("[Guard] The name on the system bus is taken, or not ours to take");
        return EX_UNAVAILABLE;
    }
    return QCoreApplication::exec();
}

Task<> removeAndQuit(Removal* removal)
{
    const bool isComplete = co_await removal->run();
    QCoreApplication::exit(isComplete ? EXIT_SUCCESS : EXIT_FAILURE);
}

bool isSystemdOnBus()
{
    const auto bus = QDBusConnection::systemBus();
    return bus.isConnected() && bus.interface()->isServiceRegistered("org.freedesktop.systemd1").value();
}

int restore()
{
    Machine machine;
    DirectUnits directUnits{machine.children};
    std::unique_ptr<SystemdUnits> systemdUnits;
    if (isSystemdOnBus())
        systemdUnits = std::make_unique<SystemdUnits>();
    SystemUnits& units = systemdUnits ? static_cast<SystemUnits&>(*systemdUnits) : directUnits;
    Removal removal{units, machine.hostsFile, machine.children, machine.log, {stateFolder, proxyStateFolder}};
    QTimer::singleShot(0, [&removal] { runDetached(removeAndQuit(&removal)); });
    return QCoreApplication::exec();
}

int run(const std::vector<std::string>& arguments)
{
    if (arguments.empty())
        return serve();
    if (arguments == std::vector<std::string>{"--restore"})
        return restore();
    if (arguments == std::vector<std::string>{"--version"}) {
        std::cout << "stillgate-guard " << version << '\n';
        return EX_OK;
    }
    if (arguments == std::vector<std::string>{"--help"}) {
        std::cout << usage;
        return EX_OK;
    }
    std::cerr << "stillgate-guard: these options make no sense; see --help\n";
    return EX_USAGE;
}

} // namespace

} // namespace stillgate::guard

int main(int argc, char** argv)
{
    // Whoever reads an answer, or runs a script of ours, may end before us.
    std::signal(SIGPIPE, SIG_IGN);
    // The records are root's alone. What others are to read is given its mode by name.
    ::umask(S_IRWXG | S_IRWXO);
    const QCoreApplication application{argc, argv};
    return stillgate::guard::run({argv + std::min(argc, 1), argv + argc});
}
