#include "Views/ScreenTime/ScreenTimeViewModel.h"

#include "DesignSystem/Tokens.h"
#include "Views/Common/Minutes.h"
#include "Views/Common/TextOf.h"
#include "Views/Common/WhenDone.h"

#include <algorithm>
#include <map>
#include <span>

namespace stillgate
{

namespace
{

constexpr std::ptrdiff_t barCount = 7;
constexpr double tallestBar = 100; // logical pixels
constexpr double shortestBar = 4;
constexpr std::size_t appCount = 10;

constexpr struct
{
    const char* period; // as the backend is asked for it
    const char* name;
} periodTable[] = {
    {"week", "screenTimeAnalytics.week"},
    {"month", "screenTimeAnalytics.month"},
};

constexpr struct
{
    std::string_view category;
    const char* name;
} categoryNames[] = {
    {"social_media", "onboarding.categories.socialMedia"},
    {"gaming", "onboarding.categories.games"},
    {"streaming", "onboarding.categories.entertainment"},
    {"gambling", "onboarding.categories.gambling"},
    {"shopping", "onboarding.categories.shopping"},
    {"news", "onboarding.categories.news"},
    {"adult", "onboarding.categories.adult"},
};

/// In no language: the keys of categories are English.
QString capitalized(QString key)
{
    bool isInWord = false;
    for (auto& character : key) {
        character = isInWord ? character.toLower() : character.toUpper();
        isInWord = character.isLetterOrNumber();
    }
    return key;
}

QString categoryName(const std::string& category)
{
    for (const auto& [key, name] : categoryNames) {
        if (category == key)
            return textOf(name);
    }
    return capitalized(QString::fromStdString(category));
}

/// "15" of "2026-01-15"; a date of another form stays as it is.
QString shortDay(const std::string& date)
{
    const auto text = QString::fromStdString(date);
    const auto parts = text.split('-');
    return parts.size() == 3 ? parts[2] : text;
}

double barHeight(std::int64_t minutes, std::int64_t longestDay)
{
    return std::max(shortestBar, tallestBar * double(minutes) / double(longestDay));
}

double shareOf(const DailyScreenTime& day, std::int64_t minutes)
{
    return double(minutes) / double(std::max<std::int64_t>(1, day.totalMinutes));
}

} // namespace

ScreenTimeViewModel::ScreenTimeViewModel(Backend& backend)
    : m_backend(backend)
{
    load();
}

QStringList ScreenTimeViewModel::periods()
{
    QStringList names;
    for (const auto& [period, name] : periodTable)
        names.push_back(textOf(name));
    return names;
}

QList<Figure> ScreenTimeViewModel::figures() const
{
    if (!m_report)
        return {};
    return {
        {textOf("screenTimeAnalytics.totalScreenTime"), formatMinutes(m_report->totalMinutes), "clock.fill",
            tokens().sgAccent},
        {textOf("screenTimeAnalytics.avgDaily"), formatMinutes(m_report->avgDailyMinutes), "chart.line.uptrend.xyaxis",
            tokens().sgSuccess},
        {textOf("screenTimeAnalytics.pickups"), QString::number(m_report->totalPickups), "hand.tap.fill",
            tokens().sgWarning},
    };
}

QList<DayBar> ScreenTimeViewModel::days() const
{
    QList<DayBar> bars;
    if (!m_report)
        return bars;
    const auto& days = m_report->days;
    std::int64_t longestDay = 1;
    for (const auto& day : days)
        longestDay = std::max(longestDay, day.totalMinutes);
    for (auto day = days.end() - std::min(barCount, std::ssize(days)); day != days.end(); ++day) {
        const auto hours = QString{"%1h"}.arg(day->totalMinutes / 60);
        bars.push_back({shortDay(day->date), hours, barHeight(day->totalMinutes, longestDay)});
    }
    return bars;
}

QList<UsageShare> ScreenTimeViewModel::categories() const
{
    const auto* day = lastDay();
    if (day == nullptr || !day->categoryTotals)
        return {};
    std::multimap<std::int64_t, std::string, std::greater<>> byMinutes; // what is equal stays in its order
    for (const auto& [category, minutes] : *day->categoryTotals)
        byMinutes.emplace(minutes, category);
    QList<UsageShare> shares;
    for (const auto& [minutes, category] : byMinutes)
        shares.push_back(
            {QString::fromStdString(category), categoryName(category), shareOf(*day, minutes), formatMinutes(minutes)});
    return shares;
}

QList<UsageShare> ScreenTimeViewModel::apps() const
{
    const auto* day = lastDay();
    if (day == nullptr || !day->appUsage)
        return {};
    QList<UsageShare> shares;
    for (const auto& app : std::span{*day->appUsage}.first(std::min(appCount, day->appUsage->size())))
        shares.push_back({.name = QString::fromStdString(app.name.value_or(app.identifier)),
            .share = shareOf(*day, app.minutes),
            .minutes = formatMinutes(app.minutes)});
    return shares;
}

void ScreenTimeViewModel::select(int period)
{
    if (period == m_selectedPeriod || period < 0 || period >= std::ssize(periodTable))
        return;
    m_selectedPeriod = period;
    load();
}

void ScreenTimeViewModel::load()
{
    m_report.reset();
    m_isLoading = true;
    Q_EMIT changed();
    const auto show = [this, load = ++m_loads](Result<ScreenTimeReport> answer) {
        if (load != m_loads)
            return;
        if (answer)
            m_report = std::move(*answer);
        m_isLoading = false;
        Q_EMIT changed();
    };
    whenDone(this, m_backend.getScreenTimeReport(periodTable[m_selectedPeriod].period), show);
}

const DailyScreenTime* ScreenTimeViewModel::lastDay() const
{
    return m_report && !m_report->days.empty() ? &m_report->days.back() : nullptr;
}

} // namespace stillgate
