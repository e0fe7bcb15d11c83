#include "App/AppState.h"
#include "App/CommandLine.h"
#include "Backend/APIService.h"
#include "Backend/BaseURL.h"
#include "Backend/SecureSession.h"
#include "Blocking/AbsentDNSProxy.h"
#include "Blocking/PassiveAppMonitor.h"
#include "Platform/HostsBlock.h"
#include "Platform/Linux/Deployment.h"
#include "Platform/Linux/JSONUserDefaults.h"
#include "Platform/Linux/LinuxBundle.h"
#include "Platform/Linux/LinuxChildProcess.h"
#include "Platform/Linux/LinuxFileManager.h"
#include "Platform/Linux/LinuxHost.h"
#include "Platform/Linux/LinuxScheduler.h"
#include "Platform/Linux/ScriptHostsFileWriter.h"
#include "Platform/Linux/StandardErrorLog.h"
#include "Platform/Linux/TerminationSignals.h"
#include "ScreenTime/IdleUsageTracker.h"

#include <QCoreApplication>

#include <csignal>
#include <cstdlib>
#include <iostream>
#include <sysexits.h>

namespace stillgate
{

namespace
{

/// What is there before anything is known about the backend.
struct Machine
{
    Deployment deployment = builtInDeployment();
    StandardErrorLog log;
    LinuxBundle bundle{deployment};
    LinuxFileManager files;
    LinuxScheduler scheduler;
    LinuxHost host;
    LinuxChildProcess children;
    NotificationCenter notifications;
    JSONUserDefaults defaults{JSONUserDefaults::standardFile(), files, log};
};

std::optional<std::string> environmentValue(const char* name)
{
    const auto* value = std::getenv(name);
    return value != nullptr ? std::optional<std::string>{value} : std::nullopt;
}

std::optional<std::string> baseURLOn(Machine& machine)
{
    return resolveBaseURL(
        {
            environmentValue("STILLGATE_API_BASE_URL"),
            machine.defaults.string("sg_api_base_url"),
            machine.bundle.infoValue("STILLGATE_API_BASE_URL"),
        },
        machine.log);
}

/// One of everything, for a machine of which only files and processes are known.
struct HeadlessEngine
{
    Machine& machine;
    std::string baseURL;

    KeychainService keychain{machine.files};
    SecureSession session{{machine.deployment.pinnedHashes, machine.deployment.trustAnchor}, machine.notifications,
        machine.scheduler, machine.log};
    APIService backend{baseURL, session, keychain, machine.notifications};
    ScriptHostsFileWriter hostsFileWriter{hostsPath, machine.files, machine.children, machine.host};
    HostsFileService hostsFile{hostsFileWriter, machine.files, machine.defaults, machine.host, machine.log};
    PassiveAppMonitor monitor;
    IdleUsageTracker tracker;
    AbsentDNSProxy dnsProxy;

    AppState state{{
        .backend = backend,
        .hostsFile = hostsFile,
        .monitor = monitor,
        .tracker = tracker,
        .dnsProxy = dnsProxy,
        .bundle = machine.bundle,
        .files = machine.files,
        .log = machine.log,
        .notifications = machine.notifications,
        .scheduler = machine.scheduler,
        .defaults = machine.defaults,
    }};

    Task<> start()
    {
        co_await state.bootstrap();
        if (state.isOnboarding)
            machine.log.write("[Stillgate] Not set up yet; nothing to enforce");
        else if (!state.isAuthenticated)
            machine.log.write("[Stillgate] Nobody is signed in; nothing to enforce");
    }

    /// The blocks stay. A write that is under way comes to its end first.
    Task<> stop()
    {
        monitor.stopMonitoring();
        tracker.stopTracking();
        co_await hostsFile.settled();
        QCoreApplication::quit();
    }
};

int runHeadless(int argc, char** argv)
{
    QCoreApplication application{argc, argv};
    Machine machine;
    const auto baseURL = baseURLOn(machine);
    if (!baseURL) {
        std::cerr << noBaseURLMessage << '\n';
        return EX_CONFIG;
    }
    HeadlessEngine engine{.machine = machine, .baseURL = *baseURL};
    const TerminationSignals signals{[&engine] { runDetached(engine.stop()); }};
    runDetached(engine.start());
    // Requests may be under way, and Qt would wait for the look-up of a name, which nothing can cut short.
    std::quick_exit(QCoreApplication::exec());
}

} // namespace

} // namespace stillgate

int main(int argc, char** argv)
{
    using namespace stillgate;

    // Whoever reads the log may go away; the blocks stay up all the same.
    std::signal(SIGPIPE, SIG_IGN);

    const std::vector<std::string> arguments(argv + std::min(argc, 1), argv + argc);
    const auto version = LinuxBundle{builtInDeployment()}.infoValue("CFBundleShortVersionString").value_or("");
    const auto request = parseCommandLine(arguments, version);
    if (const auto* printed = std::get_if<PrintAndExit>(&request)) {
        std::cout << printed->text;
        return EX_OK;
    }
    if (const auto* wrong = std::get_if<UsageError>(&request)) {
        std::cerr << wrong->text;
        return EX_USAGE;
    }
    return runHeadless(argc, argv);
}
