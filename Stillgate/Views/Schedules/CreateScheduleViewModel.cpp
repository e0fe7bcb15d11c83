#include "Views/Schedules/CreateScheduleViewModel.h"

#include "Views/Common/TextOf.h"
#include "Views/Common/WhenDone.h"

#include <QLocale>
#include <QUuid>

#include <algorithm>
#include <array>

namespace stillgate
{

namespace
{

constexpr struct
{
    std::string_view type; // as the server knows it
    const char* title;
} types[] = {
    {"always", "schedule.alwaysOn"},
    {"recurring", "schedule.recurring"},
};

constexpr int recurring = 1;

constexpr std::array dayNames{"mon", "tue", "wed", "thu", "fri", "sat", "sun"}; // as the server knows them

QList<QString> daysOfTheWeek(QLocale::FormatType format)
{
    QList<QString> days;
    for (int day = 1; day <= int(dayNames.size()); ++day)
        days << QLocale{}.standaloneDayName(day, format);
    return days;
}

} // namespace

CreateScheduleViewModel::CreateScheduleViewModel(OwnRules& ownRules, const Host& host)
    : m_ownRules(ownRules)
    , m_host(host)
    , m_selectedType(recurring)
{}

void CreateScheduleViewModel::setName(const QString& name)
{
    m_name = name;
    Q_EMIT changed();
}

QList<QString> CreateScheduleViewModel::typeTitles()
{
    QList<QString> titles;
    for (const auto& type : types)
        titles << textOf(type.title);
    return titles;
}

bool CreateScheduleViewModel::isRecurring() const
{
    return m_selectedType == recurring;
}

QList<QString> CreateScheduleViewModel::dayLabels()
{
    return daysOfTheWeek(QLocale::NarrowFormat);
}

QList<QString> CreateScheduleViewModel::dayTitles()
{
    return daysOfTheWeek(QLocale::LongFormat);
}

QString CreateScheduleViewModel::confirmTitle() const
{
    return textOf(m_isCreating ? "common.creating" : "schedule.create");
}

QString CreateScheduleViewModel::confirmSymbol() const
{
    return m_isCreating ? "" : "checkmark";
}

void CreateScheduleViewModel::chooseType(int index)
{
    m_selectedType = index;
    Q_EMIT changed();
}

void CreateScheduleViewModel::toggleDay(int day)
{
    if (m_selectedDays.erase(day) == 0)
        m_selectedDays.insert(day);
    Q_EMIT changed();
}

void CreateScheduleViewModel::create()
{
    if (!canCreate())
        return;
    m_isCreating = true;
    Q_EMIT changed();
    whenDone(this, m_ownRules.addSchedule(schedule()), [this](const Result<void>&) { Q_EMIT finished(); });
}

BlockSchedule CreateScheduleViewModel::schedule() const
{
    BlockSchedule made{
        .id = QUuid::createUuid().toString(QUuid::WithoutBraces).toStdString(),
        .name = m_name.toStdString(),
        .scheduleType = std::string{types[m_selectedType].type},
        .timezone = m_host.timeZone(),
        .enabled = true,
    };
    if (!isRecurring())
        return made;
    made.days.emplace();
    std::ranges::transform(m_selectedDays, std::back_inserter(*made.days), [](int day) { return dayNames.at(day); });
    made.startTime = m_startTime.toStdString();
    made.endTime = m_endTime.toStdString();
    return made;
}

} // namespace stillgate
