#pragma once

#include "App/DeviceAuthorization.h"
#include "App/OwnRules.h"
#include "Platform/Bundle.h"
#include "Platform/Clock.h"
#include "Platform/DisplayPreferences.h"
#include "Platform/Host.h"
#include "Platform/Pasteboard.h"
#include "Platform/WindowStacking.h"
#include "Platform/Workspace.h"

#include <filesystem>
#include <functional>
#include <vector>

namespace stillgate
{

/// What the windows show and set going. All of it outlives them.
struct WindowServices
{
    AppState& state;
    DeviceAuthorization& deviceAuthorization;
    OwnRules& ownRules;
    Backend& backend;
    AppMonitor& monitor;
    UsageTracker& tracker;
    Workspace& workspace;
    const Bundle& bundle;
    NotificationCenter& notifications;
    Pasteboard& pasteboard;
    DisplayPreferences& displayPreferences;
    const Clock& clock;
    Scheduler& scheduler;
    const Host& host;
    WindowStacking& stacking;
    std::vector<std::filesystem::path> dataFolders; ///< in which apps have their icons
    std::function<void()> quit;                     ///< the application
};

} // namespace stillgate
