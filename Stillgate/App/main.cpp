#include "App/AppState.h"
#include "App/CommandLine.h"
#include "Backend/UnreachableBackend.h"
#include "Blocking/AbsentDNSProxy.h"
#include "Blocking/PassiveAppMonitor.h"
#include "Platform/HostsBlock.h"
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
#include <iostream>
#include <sysexits.h>

namespace stillgate
{

namespace
{

/// One of everything, for a machine of which only files and processes are known.
struct HeadlessEngine
{
    StandardErrorLog log;
    LinuxBundle bundle;
    LinuxFileManager files;
    LinuxScheduler scheduler;
    LinuxHost host;
    LinuxChildProcess children;
    NotificationCenter notifications;
    JSONUserDefaults defaults{JSONUserDefaults::standardFile(), files, log};

    KeychainService keychain{files};
    UnreachableBackend backend{keychain};
    ScriptHostsFileWriter hostsFileWriter{hostsPath, files, children, host};
    HostsFileService hostsFile{hostsFileWriter, files, defaults, host, log};
    PassiveAppMonitor monitor;
    IdleUsageTracker tracker;
    AbsentDNSProxy dnsProxy;

    AppState state{{
        .backend = backend,
        .hostsFile = hostsFile,
        .monitor = monitor,
        .tracker = tracker,
        .dnsProxy = dnsProxy,
        .bundle = bundle,
        .files = files,
        .log = log,
        .notifications = notifications,
        .scheduler = scheduler,
        .defaults = defaults,
    }};

    Task<> start()
    {
        co_await state.bootstrap();
        if (state.isOnboarding)
            log.write("[Stillgate] Not set up yet; nothing to enforce");
        else if (!state.isAuthenticated)
            log.write("[Stillgate] Nobody is signed in; nothing to enforce");
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
    HeadlessEngine engine;
    const TerminationSignals signals{[&engine] { runDetached(engine.stop()); }};
    runDetached(engine.start());
    return QCoreApplication::exec();
}

} // namespace

} // namespace stillgate

int main(int argc, char** argv)
{
    using namespace stillgate;

    // Whoever reads the log may go away; the blocks stay up all the same.
    std::signal(SIGPIPE, SIG_IGN);

    const std::vector<std::string> arguments(argv + std::min(argc, 1), argv + argc);
    const auto version = LinuxBundle{}.infoValue("CFBundleShortVersionString").value_or("");
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
