#include "Views/Protection/QuickBlockViewModel.h"

#include "Views/Common/TextOf.h"
#include "Views/Protection/EnteredDomains.h"

#include <algorithm>

namespace stillgate
{

using namespace std::chrono_literals;

namespace
{

constexpr std::int64_t untilEndOfDay = -1;

constexpr struct
{
    std::int64_t minutes;
    const char* label;
} durationTable[] = {
    {15, "desktop.quickBlock.min15"},
    {30, "desktop.quickBlock.min30"},
    {60, "desktop.quickBlock.hour1"},
    {120, "desktop.quickBlock.hours2"},
    {240, "desktop.quickBlock.hours4"},
    {untilEndOfDay, "desktop.quickBlock.endOfDay"},
};

/// Full minutes to the first moment of the next calendar day; a day of a change of the clocks has 23 or 25 hours.
std::int64_t minutesToNextDay(const Host& host, Date now)
{
    constexpr auto surelyTomorrow = 36h;
    const auto tomorrow = host.startOfDay(host.startOfDay(now) + surelyTomorrow);
    return std::max<std::int64_t>(1, std::chrono::duration_cast<std::chrono::minutes>(tomorrow - now).count());
}

} // namespace

QuickBlockViewModel::QuickBlockViewModel(
    AppMonitor& monitor, const Clock& clock, const Host& host, std::vector<InstalledApp> installedApps)
    : m_monitor(monitor)
    , m_clock(clock)
    , m_host(host)
    , m_picker(std::move(installedApps))
{
    connect(&m_picker, &AppPickerModel::changed, this, &QuickBlockViewModel::changed);
}

QStringList QuickBlockViewModel::durations()
{
    QStringList labels;
    for (const auto& duration : durationTable)
        labels << textOf(duration.label);
    return labels;
}

void QuickBlockViewModel::selectDuration(int index)
{
    m_selectedDuration = index;
    Q_EMIT changed();
}

void QuickBlockViewModel::selectTab(int index)
{
    m_selectedTab = index;
    Q_EMIT changed();
}

void QuickBlockViewModel::setDomainInput(const QString& text)
{
    m_domainInput = text;
    Q_EMIT changed();
}

bool QuickBlockViewModel::canStart() const
{
    return showsApps() ? !m_picker.selectedApps().empty() : !parsedDomains().empty();
}

/// What was chosen on either tab counts, whichever is in view.
void QuickBlockViewModel::start()
{
    if (!canStart())
        return;
    m_monitor.startQuickBlock(m_picker.selectedApps(), parsedDomains(), minutes());
    Q_EMIT started();
}

std::set<std::string> QuickBlockViewModel::parsedDomains() const
{
    std::set<std::string> domains;
    for (const auto& domain : enteredDomains(m_domainInput.toLower()))
        domains.insert(domain);
    return domains;
}

std::int64_t QuickBlockViewModel::minutes() const
{
    const auto minutes = durationTable[m_selectedDuration].minutes;
    return minutes == untilEndOfDay ? minutesToNextDay(m_host, m_clock.now()) : minutes;
}

} // namespace stillgate
