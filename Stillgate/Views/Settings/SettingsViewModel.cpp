#include "Views/Settings/SettingsViewModel.h"

#include "Views/Common/FirstCharacter.h"
#include "Views/Common/TextOf.h"

#include <QLocale>

#include <algorithm>
#include <utility>

namespace stillgate
{

namespace
{

constexpr int noTab = -1;

constexpr struct
{
    int tag;
    const char* icon;
    const char* label;
} sidebar[] = {
    {settingstab::dashboard, "square.grid.2x2", "nav.dashboard"},
    {settingstab::streak, "flame", "streak.title"},
    {settingstab::screenTime, "chart.bar.fill", "screenTimeAnalytics.title"},
    {noTab, "", "desktop.protection.title"},
    {settingstab::protection, "shield.checkered", "desktop.protection.title"},
    {settingstab::schedules, "calendar.badge.clock", "schedule.title"},
    {noTab, "", "connections.title"},
    {settingstab::tasks, "checkmark.circle", "tasks.title"},
    {settingstab::groups, "person.2", "groups.title"},
    {noTab, "", "settings.title"},
    {settingstab::devices, "desktopcomputer", "devices.title"},
    {settingstab::account, "person.circle", "account.title"},
    {settingstab::about, "info.circle", "account.about"},
};

std::vector<int> tabs()
{
    std::vector<int> tags;
    for (const auto& item : sidebar) {
        if (item.tag != noTab)
            tags.push_back(item.tag);
    }
    return tags;
}

} // namespace

SettingsViewModel::SettingsViewModel(SessionData& session, NotificationCenter& notifications, TabFactory makeTab)
    : m_session(session)
    , m_makeTab(std::move(makeTab))
    , m_tab(m_makeTab(m_selectedTab))
    , m_userNotifier(session.currentUser.addNotifier([this] { Q_EMIT userChanged(); }))
    , m_sessionNotifier(session.isAuthenticated.addNotifier([this] { showTab(); }))
    , m_navigation(notifications.observeWithInfo(sgNavigateToTab, [this](const UserInfo& info) {
        if (const auto tab = info.find("tab"); tab != info.end())
            select(tab->second);
    }))
{}

SettingsViewModel::~SettingsViewModel() = default;

QList<SidebarItem> SettingsViewModel::sidebarItems()
{
    QList<SidebarItem> items;
    for (const auto& item : sidebar)
        items.push_back({item.tag, item.icon, textOf(item.label)});
    return items;
}

QString SettingsViewModel::userName() const
{
    const auto& user = m_session.currentUser.value();
    if (!user)
        return {};
    const auto name = user->displayName.value_or("");
    return QString::fromStdString(name.empty() ? user->email : name);
}

QString SettingsViewModel::userInitial() const
{
    return QLocale().toUpper(firstCharacter(userName()));
}

void SettingsViewModel::select(int tag)
{
    if (tag == m_selectedTab || std::ranges::count(tabs(), tag) == 0)
        return;
    m_selectedTab = tag;
    showTab();
}

/// Anew also when a session begins or ends: what a screen has loaded is that user's.
void SettingsViewModel::showTab()
{
    auto previous = std::exchange(m_tab, m_makeTab(m_selectedTab));
    Q_EMIT selectedTabChanged();
    previous.viewModel.release()->deleteLater(); // the screen goes by deleteLater() too, and before it
}

void SettingsViewModel::move(int places)
{
    const auto tags = tabs();
    const auto at = std::ranges::find(tags, m_selectedTab) - tags.begin() + places;
    if (at >= 0 && std::cmp_less(at, tags.size()))
        select(tags[static_cast<std::size_t>(at)]);
}

} // namespace stillgate
