#pragma once

#include "App/BlockModalWindowController.h"
#include "App/OwnRules.h"
#include "App/ServiceRunner.h"
#include "Backend/APIService.h"
#include "Backend/SecureSession.h"
#include "Blocking/DNSProxyManager.h"
#include "Blocking/HostsFileRepair.h"
#include "Blocking/ProcessMonitorService.h"
#include "Platform/UserNotifications.h"
#include "Platform/Workspace.h"
#include "ScreenTime/ScreenTimeTracker.h"

namespace stillgate
{

/// The machine and its desktop, as the engine sees them. All of it outlives the event loop.
struct Machine
{
    const Bundle& bundle;
    FileManager& files;
    Log& log;
    NotificationCenter& notifications;
    Clock& clock;
    Scheduler& scheduler;
    UserDefaults& defaults;
    Host& host;
    HostsFileWriter& hostsFileWriter;
    Workspace& workspace;
    BrowserScripting& browsers;
    SystemExtensions& systemExtensions;
    DNSProxyPreferences& dnsProxyPreferences;
    UserNotifications& userNotifications;
};

/// One of every service, put together. What a window shows, and what runs without any, is the same.
struct Engine
{
    Machine machine;
    std::string baseURL;           ///< of the backend, checked (`resolveBaseURL`)
    SecureSession::Settings trust; ///< which servers are that backend

    KeychainService keychain{machine.files};
    SecureSession session{trust, machine.notifications, machine.scheduler, machine.log};
    APIService backend{baseURL, session, keychain, machine.notifications};
    HostsFileService hostsFile{machine.hostsFileWriter, machine.files, machine.defaults, machine.host, machine.log};
    HostsFileRepair hostsFileRepair{hostsFile, machine.files, machine.scheduler, machine.log};
    BlockModalWindowController blockModal{backend};
    ProcessMonitorService monitor{{machine.workspace, machine.browsers, blockModal, hostsFile,
        machine.userNotifications, machine.clock, machine.scheduler, machine.host}};
    ScreenTimeTracker tracker{machine.workspace, machine.clock, machine.scheduler, machine.files, machine.host,
        machine.defaults, backend, machine.log};
    DNSProxyManager dnsProxy{machine.systemExtensions, machine.dnsProxyPreferences, machine.log};

    AppServices services{
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
    };
    AppState state{services};
    OwnRules ownRules{state, backend, machine.log};
    ServiceRunner runner{state, services};
};

} // namespace stillgate
