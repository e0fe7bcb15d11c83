#include "App/AppDelegate.h"
#include "App/CommandLine.h"
#include "App/Engine.h"
#include "App/TerminalSignIn.h"
#include "Backend/BaseURL.h"
#include "Localization/L.h"
#include "Platform/HostsBlock.h"
#include "Platform/Linux/Deployment.h"
#include "Platform/Linux/Desktop/AbsentWindowStacking.h"
#include "Platform/Linux/Desktop/AbsentWorkspace.h"
#include "Platform/Linux/Desktop/AccessibilityBrowserScripting.h"
#include "Platform/Linux/Desktop/X11WindowStacking.h"
#include "Platform/Linux/Desktop/X11Workspace.h"
#include "Platform/Linux/Guard/GuardDNSProxy.h"
#include "Platform/Linux/Guard/GuardHostsFileWriter.h"
#include "Platform/Linux/InstanceLock.h"
#include "Platform/Linux/JSONUserDefaults.h"
#include "Platform/Linux/LinuxBundle.h"
#include "Platform/Linux/LinuxChildProcess.h"
#include "Platform/Linux/LinuxClock.h"
#include "Platform/Linux/LinuxFileManager.h"
#include "Platform/Linux/LinuxHost.h"
#include "Platform/Linux/LinuxScheduler.h"
#include "Platform/Linux/ScriptHostsFileWriter.h"
#include "Platform/Linux/Shell/BusSingleInstance.h"
#include "Platform/Linux/Shell/BusUserNotifications.h"
#include "Platform/Linux/Shell/ClipboardPasteboard.h"
#include "Platform/Linux/Shell/PortalDisplayPreferences.h"
#include "Platform/Linux/Shell/QuitRequests.h"
#include "Platform/Linux/Shell/TrayStatusItem.h"
#include "Platform/Linux/StandardErrorLog.h"
#include "Platform/Linux/TerminationSignals.h"
#include "Views/Windows/CommandKeys.h"
#include "Views/Windows/QuickWindows.h"

#include <QApplication>
#include <QLocale>
#include <QQuickWindow>

#include <csignal>
#include <cstdlib>
#include <iostream>
#include <malloc.h>
#include <sysexits.h>

namespace stillgate
{

namespace
{

std::unique_ptr<Workspace> workspaceOn(DesktopEntries& entries, Scheduler& scheduler, Log& log)
{
    auto events = X11Connection::open();
    auto requests = X11Connection::open();
    if (events && requests) {
        if (qEnvironmentVariableIsSet("WAYLAND_DISPLAY"))
            log.write("[Workspace] This is a Wayland desktop: only apps that use X11 are seen");
        return std::make_unique<X11Workspace>(std::move(events), std::move(requests), entries, scheduler, log);
    }
    return std::make_unique<AbsentWorkspace>(entries, log);
}

std::unique_ptr<WindowStacking> windowStackingOn(Scheduler& scheduler)
{
    if (QGuiApplication::platformName() == "xcb")
        return std::make_unique<X11WindowStacking>(scheduler);
    return std::make_unique<AbsentWindowStacking>();
}

/// What is there before anything is known about the backend.
struct LinuxMachine
{
    Deployment deployment = builtInDeployment();
    StandardErrorLog log;
    LinuxBundle bundle{deployment};
    LinuxFileManager files;
    LinuxClock clock;
    LinuxScheduler scheduler;
    LinuxHost host;
    LinuxChildProcess children;
    NotificationCenter notifications;
    JSONUserDefaults defaults{JSONUserDefaults::standardFile(), files, log};
    GuardClient guard;
    const bool hasGuard = GuardClient::isInstalled();
    std::unique_ptr<HostsFileWriter> hostsFileWriter = makeHostsFileWriter();
    GuardDNSProxy guardDNSProxy{guard, scheduler};
    AbsentDNSProxySystem absentDNSProxy;
    DesktopEntries desktopEntries{DesktopEntries::standardDataFolders()};
    std::unique_ptr<Workspace> workspace = workspaceOn(desktopEntries, scheduler, log);
    AccessibilityBrowserScripting browsers{log};
    BusUserNotifications userNotifications;
    LocalizationManager texts{bundle, files, defaults, host};

    LinuxMachine()
    {
        ProcessTexts::use(texts);
        QLocale::setDefault(QLocale{QString::fromStdString(L.locale())});
    }

    [[nodiscard]] Machine machine()
    {
        return {.bundle = bundle,
            .files = files,
            .log = log,
            .notifications = notifications,
            .clock = clock,
            .scheduler = scheduler,
            .defaults = defaults,
            .host = host,
            .hostsFileWriter = *hostsFileWriter,
            .workspace = *workspace,
            .browsers = browsers,
            .systemExtensions = hasGuard ? static_cast<SystemExtensions&>(guardDNSProxy) : absentDNSProxy,
            .dnsProxyPreferences = hasGuard ? static_cast<DNSProxyPreferences&>(guardDNSProxy) : absentDNSProxy,
            .userNotifications = userNotifications};
    }

private:
    /// With a guard, root goes through it too: it keeps the names of all accounts of the machine together.
    std::unique_ptr<HostsFileWriter> makeHostsFileWriter()
    {
        if (hasGuard)
            return std::make_unique<GuardHostsFileWriter>(guard);
        return std::make_unique<ScriptHostsFileWriter>(hostsPath, files, children, host);
    }
};

std::optional<std::string> environmentValue(const char* name)
{
    const auto* value = std::getenv(name);
    return value != nullptr ? std::optional<std::string>{value} : std::nullopt;
}

std::optional<std::string> baseURLOn(LinuxMachine& linux)
{
    return resolveBaseURL(
        {
            environmentValue("STILLGATE_API_BASE_URL"),
            linux.defaults.string("sg_api_base_url"),
            linux.bundle.infoValue("STILLGATE_API_BASE_URL"),
        },
        linux.log);
}

/// The machine with its engine, for as long as the process lives.
struct Program
{
    LinuxMachine linux;
    std::unique_ptr<Engine> engine; ///< null: no backend is configured, which has been said

    Program()
    {
        const auto baseURL = baseURLOn(linux);
        if (!baseURL) {
            std::cerr << noBaseURLMessage << '\n';
            return;
        }
        const auto& deployment = linux.deployment;
        engine = std::unique_ptr<Engine>{new Engine{
            .machine = linux.machine(),
            .baseURL = *baseURL,
            .trust = {deployment.pinnedHashes, deployment.trustAnchor},
        }};
    }
};

/// Qt calls exit() when the X server is gone. That destroys what other threads still work with; but first what belongs
/// to the calling thread, and there it ends.
struct EndBeforeTheStatics
{
    ~EndBeforeTheStatics() { std::_Exit(EXIT_FAILURE); }
};

/// Requests may be under way, and Qt would wait for the look-up of a name, which nothing can cut short.
[[noreturn]] void runUntilQuit()
{
    thread_local const EndBeforeTheStatics end;
    std::quick_exit(QCoreApplication::exec());
}

/// A start takes far more memory than what it leaves: the cache and the rules as JSON, answers, the text of the hosts
/// file. Given back, it is half of what the process holds.
[[nodiscard]] std::unique_ptr<Timer> giveBackMemoryOfTheStart(Scheduler& scheduler)
{
    using namespace std::chrono_literals;
    return scheduler.once(5s, [] { ::malloc_trim(0); });
}

void sayThatItRuns()
{
    std::cerr << "stillgate: it runs already, for this user\n";
}

Task<> startHeadless(Engine* engine)
{
    const auto& state = engine->state;
    auto& log = engine->machine.log;
    co_await engine->state.bootstrap();
    if (state.isAuthenticated)
        engine->runner.startServices();
    else if (state.isMaintenanceMode)
        log.write("[Stillgate] The server is under maintenance; start again when it is over");
    else if (state.requiresForceUpdate)
        log.write("[Stillgate] This version is too old for the server");
    else if (state.isOnboarding)
        log.write("[Stillgate] Not set up yet; nothing to enforce. See stillgate --headless --sign-in");
    else
        log.write("[Stillgate] Nobody is signed in; nothing to enforce. See stillgate --headless --sign-in");
}

Task<> stopHeadless(Engine* engine)
{
    co_await engine->runner.applicationWillTerminate();
    QCoreApplication::exit(EX_OK);
}

/// Runs an engine without windows, unless one runs already for this user.
template <class Run>
int runWithoutWindows(int argc, char** argv, Run run)
{
    QCoreApplication application{argc, argv};
    LinuxFileManager files;
    const InstanceLock lock{files};
    if (!lock.isHeld()) {
        sayThatItRuns();
        return EX_TEMPFAIL;
    }
    Program program;
    if (!program.engine)
        return EX_CONFIG;
    run(program);
    return EX_OK;
}

void runHeadless(Program& program)
{
    auto* engine = program.engine.get();
    const TerminationSignals signals{[engine] { runDetached(stopHeadless(engine)); }};
    runDetached(startHeadless(engine));
    const auto memory = giveBackMemoryOfTheStart(program.linux.scheduler);
    runUntilQuit();
}

/// The command is over, and nothing that it belongs to: no report, and the blocks stay.
Task<> endSignIn(Engine* engine, int status)
{
    engine->tracker.stopTracking();
    co_await engine->runner.settle();
    QCoreApplication::exit(status);
}

Task<> signInAndEnd(Engine* engine, TerminalSignIn* signIn)
{
    const bool isSignedIn = co_await signIn->run();
    co_await endSignIn(engine, isSignedIn ? EX_OK : EX_TEMPFAIL);
}

void runSignIn(Program& program)
{
    auto* engine = program.engine.get();
    const auto& machine = engine->machine;
    const auto openNothing = [](const std::string&) {}; // the link is printed
    DeviceAuthorization authorization{
        engine->state, engine->backend, openNothing, machine.clock, machine.scheduler, machine.log};
    TerminalSignIn signIn{engine->state, authorization, std::cout};
    const TerminationSignals signals{[engine] { runDetached(endSignIn(engine, EX_TEMPFAIL)); }};
    runDetached(signInAndEnd(engine, &signIn));
    runUntilQuit();
}

void chooseRenderer()
{
    // Smaller and faster to the first frame, and no graphics driver stands between a user and a block screen.
    if (!qEnvironmentVariableIsSet("QT_QUICK_BACKEND"))
        QQuickWindow::setSceneGraphBackend("software");
}

/// Qt would abort without one.
bool hasDisplay()
{
    if (qEnvironmentVariableIsSet("WAYLAND_DISPLAY") || qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        return true;
    return qEnvironmentVariableIsSet("DISPLAY") && X11Connection::open() != nullptr;
}

/// The second start of a user who has forgotten the first one.
int reopenOther(SingleInstance& instance)
{
    if (instance.reopenOther())
        return EX_OK;
    sayThatItRuns();
    return EX_TEMPFAIL;
}

int runDesktop(int argc, char** argv)
{
    if (!hasDisplay()) {
        std::cerr << "stillgate: no desktop to show windows on; see stillgate --headless\n";
        return EX_UNAVAILABLE;
    }
    chooseRenderer();
    QApplication application{argc, argv};
    QGuiApplication::setQuitOnLastWindowClosed(false);
    QGuiApplication::setDesktopFileName("com.stillgate.Stillgate");
    QGuiApplication::setWindowIcon(QIcon{":/stillgate/app-icon/stillgate.svg"});
    LinuxFileManager files;
    StandardErrorLog log;
    BusSingleInstance instance{log};
    const InstanceLock lock{files};
    if (!lock.isHeld())
        return reopenOther(instance);
    instance.listen();

    Program program;
    if (!program.engine)
        return EX_CONFIG;
    auto* engine = program.engine.get();
    auto* workspace = program.linux.workspace.get();
    const auto& machine = engine->machine;
    DeviceAuthorization authorization{engine->state, engine->backend,
        [workspace](const std::string& url) { workspace->open(url); }, machine.clock, machine.scheduler, machine.log};
    TrayStatusItem statusItem{QIcon{":/stillgate/tray.svg"}};
    PortalDisplayPreferences displayPreferences;
    const auto stacking = windowStackingOn(machine.scheduler);
    AppDelegate* delegatePointer = nullptr;
    const auto terminate = [&delegatePointer] { delegatePointer->terminate(); };
    ClipboardPasteboard pasteboard;
    QuickWindows windows{{
        .state = engine->state,
        .deviceAuthorization = authorization,
        .ownRules = engine->ownRules,
        .backend = engine->backend,
        .monitor = engine->monitor,
        .tracker = engine->tracker,
        .workspace = machine.workspace,
        .bundle = machine.bundle,
        .notifications = machine.notifications,
        .pasteboard = pasteboard,
        .displayPreferences = displayPreferences,
        .clock = machine.clock,
        .scheduler = machine.scheduler,
        .host = machine.host,
        .stacking = *stacking,
        .dataFolders = DesktopEntries::standardDataFolders(),
        .quit = terminate,
    }};
    engine->blockModal.showIn(windows);
    AppDelegate delegate{engine->state,
        {engine->runner, machine.notifications, machine.scheduler, statusItem, windows,
            [] { QCoreApplication::exit(EX_OK); }}};
    delegatePointer = &delegate;

    const auto reopened = instance.onReopen([&delegate] { delegate.applicationReopened(); });
    const CommandKeys keys{CommandKeys::Handler{
        [&delegate](const std::string& characters) { return delegate.handleCommandKey(characters); }}};
    const QuitRequests quitRequests{terminate};
    const TerminationSignals signals{terminate};
    delegate.applicationDidFinishLaunching();
    const auto memory = giveBackMemoryOfTheStart(program.linux.scheduler);
    runUntilQuit();
}

} // namespace

} // namespace stillgate

int main(int argc, char** argv)
{
    using namespace stillgate;

    // Whoever reads the log may go away; the blocks stay up all the same.
    std::signal(SIGPIPE, SIG_IGN);
    TerminationSignals::holdBack(); // Qt's threads come with the application

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
    if (std::holds_alternative<SignIn>(request))
        return runWithoutWindows(argc, argv, runSignIn);
    if (std::holds_alternative<RunHeadless>(request))
        return runWithoutWindows(argc, argv, runHeadless);
    return runDesktop(argc, argv);
}
