#include "Views/Windows/SettingsTabs.h"

#include "App/Shortcuts.h"
#include "Views/Account/AboutViewModel.h"
#include "Views/Account/AccountViewModel.h"
#include "Views/Dashboard/DashboardViewModel.h"
#include "Views/Devices/DevicesViewModel.h"
#include "Views/Group/GroupViewModel.h"
#include "Views/Protection/ProtectionViewModel.h"
#include "Views/Schedules/SchedulesViewModel.h"
#include "Views/ScreenTime/ScreenTimeViewModel.h"
#include "Views/Streak/StreakViewModel.h"
#include "Views/Tasks/TasksViewModel.h"
#include "Views/Windows/Screen.h"

namespace stillgate
{

TabScreen makeSettingsTab(int tag, const WindowServices& services)
{
    switch (tag) {
    case settingstab::dashboard:
        return {addressOfScreen("Dashboard", "DashboardTab"),
            std::make_unique<DashboardViewModel>(services.state, services.monitor, services.notifications)};
    case settingstab::streak:
        return {addressOfScreen("Streak", "StreakTab"),
            std::make_unique<StreakViewModel>(
                services.state, services.clock, services.scheduler, services.host, services.bundle.path())};
    case settingstab::screenTime:
        return {
            addressOfScreen("ScreenTime", "ScreenTimeTab"), std::make_unique<ScreenTimeViewModel>(services.backend)};
    case settingstab::protection:
        return {addressOfScreen("Protection", "ProtectionTab"),
            std::make_unique<ProtectionViewModel>(
                ProtectionServices{services.state, services.ownRules, services.monitor, services.tracker,
                    services.workspace, services.notifications, services.clock, services.scheduler, services.host})};
    case settingstab::schedules:
        return {addressOfScreen("Schedules", "ScheduleTab"),
            std::make_unique<SchedulesViewModel>(services.state, services.ownRules, services.host)};
    case settingstab::tasks:
        return {addressOfScreen("Tasks", "TasksTab"), std::make_unique<TasksViewModel>(services.backend)};
    case settingstab::groups:
        return {addressOfScreen("Group", "GroupTab"), std::make_unique<GroupViewModel>(services.backend)};
    case settingstab::devices:
        return {addressOfScreen("Devices", "DevicesTab"), std::make_unique<DevicesViewModel>(services.state)};
    case settingstab::account:
        return {addressOfScreen("Account", "AccountTab"),
            std::make_unique<AccountViewModel>(services.state, services.backend, services.pasteboard)};
    case settingstab::about:
        return {addressOfScreen("Account", "AboutTab"),
            std::make_unique<AboutViewModel>(services.bundle, services.workspace)};
    default:
        return {};
    }
}

} // namespace stillgate
