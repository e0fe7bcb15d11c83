#include "Views/Streak/StreakViewModel.h"

#include "DesignSystem/Tokens.h"
#include "Views/Common/Illustrations.h"
#include "Views/Common/TextOf.h"

#include <QLocale>
#include <QStringList>

namespace stillgate
{

using namespace std::chrono_literals;

namespace
{

constexpr const char* dayLetters[] = {"M", "T", "W", "T", "F", "S", "S"}; // in every language

using Color = const QColor Tokens::*;

constexpr struct
{
    int days;
    const char* illustration;
    const char* symbol;
    const char* name;
    const char* description;
    Color color;
} ladder[] = {
    {7, "ill-streak-sprout", "leaf.fill", "streak.milestone.sprout", "streak.milestone.sproutDesc", &Tokens::green},
    {14, "ill-streak-sapling", "tree.fill", "streak.milestone.sapling", "streak.milestone.saplingDesc", &Tokens::green},
    {30, "ill-streak-tree", "tree.fill", "streak.milestone.tree", "streak.milestone.treeDesc", &Tokens::green},
    {60, "ill-streak-mountain", "mountain.2.fill", "streak.milestone.mountain", "streak.milestone.mountainDesc",
        &Tokens::blue},
    {90, "ill-streak-star", "star.fill", "streak.milestone.star", "streak.milestone.starDesc", &Tokens::yellow},
    {180, "ill-streak-diamond", "diamond.fill", "streak.milestone.diamond", "streak.milestone.diamondDesc",
        &Tokens::cyan},
    {365, "ill-streak-champion", "crown.fill", "streak.milestone.champion", "streak.milestone.championDesc",
        &Tokens::orange},
};

QString spokenDay(int isoDay, const StreakDay& day)
{
    const auto name = QLocale().standaloneDayName(isoDay);
    if (day.isToday)
        return name + ", " + textOf("time.today");
    return day.isDone ? name + ", " + textOf("common.completed") : name;
}

QString spokenMilestone(const Milestone& milestone)
{
    QStringList parts{milestone.name, milestone.days, milestone.description};
    if (milestone.isReached)
        parts.push_back(textOf("common.completed"));
    return parts.join(", ");
}

} // namespace

StreakViewModel::StreakViewModel(
    SessionData& session, const Clock& clock, Scheduler& scheduler, const Host& host, std::filesystem::path bundle)
    : m_session(session)
    , m_clock(clock)
    , m_host(host)
    , m_bundle(std::move(bundle))
    , m_notifier(session.streak.addNotifier([this] { Q_EMIT changed(); }))
    , m_shownDay(today())
    , m_timer(scheduler.repeating(1min, [this] { noticeNewDay(); }))
{}

QString StreakViewModel::dayCount() const
{
    return QString::number(m_session.streak.value().currentStreakDays);
}

QList<StreakDay> StreakViewModel::week() const
{
    const auto streak = m_session.streak.value().currentStreakDays;
    const int isoToday = static_cast<int>(today().iso_encoding());
    QList<StreakDay> week;
    int isoDay = 0;
    for (const auto* letter : dayLetters) {
        ++isoDay;
        StreakDay day{
            .letter = letter, .isToday = isoDay == isoToday, .isDone = isoDay < isoToday && isoToday - isoDay < streak};
        day.spoken = spokenDay(isoDay, day);
        week.push_back(std::move(day));
    }
    return week;
}

QList<Figure> StreakViewModel::figures() const
{
    const auto& streak = m_session.streak.value();
    const auto lastActive =
        streak.lastActiveDate ? QString::fromStdString(*streak.lastActiveDate) : textOf("time.today");
    return {
        {textOf("streak.title"), QString{"%1d"}.arg(streak.longestStreakDays), "trophy.fill", tokens().gold},
        {textOf("time.lastUpdated"), QString::fromStdString(streak.streakStartDate.value_or("—")), "calendar",
            tokens().sgAccent},
        {textOf("time.lastUpdated"), lastActive, "clock.fill", tokens().sgSuccess},
    };
}

QList<Milestone> StreakViewModel::milestones() const
{
    QList<Milestone> milestones;
    for (const auto& step : ladder) {
        Milestone milestone{.illustration = illustrationAddress(m_bundle, step.illustration),
            .symbol = step.symbol,
            .color = tokens().*step.color,
            .name = textOf(step.name),
            .description = textOf(step.description),
            .days = QString{"%1 %2"}.arg(step.days).arg(textOf("time.days")),
            .isReached = m_session.streak.value().currentStreakDays >= step.days};
        milestone.spoken = spokenMilestone(milestone);
        milestones.push_back(std::move(milestone));
    }
    return milestones;
}

/// A window may stay open over midnight. One wait until then would end late after a suspension, in which timers stand
/// still, or after a change of the clock.
void StreakViewModel::noticeNewDay()
{
    if (today() == m_shownDay)
        return;
    m_shownDay = today();
    Q_EMIT changed();
}

} // namespace stillgate
