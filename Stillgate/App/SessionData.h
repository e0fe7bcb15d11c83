#pragma once

#include "Models/Account.h"
#include "Models/ScreenTime.h"
#include "Models/Sharing.h"

#include <QProperty>

#include <optional>
#include <string>
#include <vector>

namespace stillgate
{

/// What the program knows about the user and the session, as observable values. Main thread only.
///
/// Screens bind to it. Each field is replaced whole; during a load, fields of before and after stand side by side.
struct SessionData
{
    // Which window stands in front.
    QProperty<bool> isOnboarding{true};
    QProperty<bool> isAuthenticated{false};
    QProperty<bool> isMaintenanceMode{false};
    QProperty<bool> requiresForceUpdate{false};
    /// A start is under way, which may find a session.
    QProperty<bool> isStarting{false};

    [[nodiscard]] bool isBehindAGate() const { return isMaintenanceMode || requiresForceUpdate; }

    /// The last start or refresh couldn't get streak, rules and devices. Nothing is disabled by it.
    QProperty<bool> isOffline{false};

    // The user's own.
    QProperty<std::optional<SGUser>> currentUser;
    QProperty<Streak> streak;
    QProperty<std::vector<BlockRule>> blockRules;
    QProperty<std::vector<SGDevice>> devices;
    QProperty<std::vector<SGTask>> tasks;
    QProperty<std::vector<BlockSchedule>> schedules;
    QProperty<bool> isBlockingActive{true};
    QProperty<std::optional<ScreenTimeBudget>> budget;

    // Linked people. A sign-out leaves `sharingConnections` and `guardianRulesForMe` as they are.
    QProperty<std::optional<std::string>> sharingCode;
    QProperty<std::vector<SharingConnection>> connections;
    QProperty<std::vector<SharingConnection>> sharingConnections;
    QProperty<std::vector<GuardianBlockRule>> guardianRulesForMe;
    bool knowsGuardian = false; ///< those two are of this session, not left over from the one before

    // What the gates tell; the texts keep their last values when a gate falls.
    QProperty<std::optional<std::string>> maintenanceMessage;
    QProperty<std::optional<std::string>> forceUpdateMessage;
    QProperty<std::optional<std::string>> forceUpdateUrl;
    QProperty<std::optional<std::string>> requiredVersion;

    std::optional<std::string> currentDeviceId;
};

} // namespace stillgate
