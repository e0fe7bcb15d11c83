#include "Views/Schedules/SchedulesViewModel.h"

#include "Platform/Task.h"

#include <algorithm>
#include <utility>

namespace stillgate
{

SchedulesViewModel::SchedulesViewModel(SessionData& session, OwnRules& ownRules, const Host& host)
    : m_session(session)
    , m_ownRules(ownRules)
    , m_host(host)
    , m_notifier(session.schedules.addNotifier([this] { update(); }))
{
    update();
}

SchedulesViewModel::~SchedulesViewModel() = default;

void SchedulesViewModel::openCreateSheet()
{
    closeCreateSheet();
    m_createSheet = std::make_unique<CreateScheduleViewModel>(m_ownRules, m_host);
    connect(m_createSheet.get(), &CreateScheduleViewModel::finished, this, &SchedulesViewModel::closeCreateSheet);
    Q_EMIT changed();
}

void SchedulesViewModel::closeCreateSheet()
{
    if (!m_createSheet)
        return;
    m_createSheet->disconnect(this);
    m_createSheet.release()->deleteLater(); // it may be what says so
    Q_EMIT changed();
}

void SchedulesViewModel::askToDelete(const QString& id)
{
    m_idToDelete = id;
    Q_EMIT changed();
}

void SchedulesViewModel::keep()
{
    m_idToDelete.clear();
    Q_EMIT changed();
}

void SchedulesViewModel::deleteForGood()
{
    const auto id = std::exchange(m_idToDelete, {});
    Q_EMIT changed();
    runDetached(m_ownRules.deleteSchedule(id.toStdString()));
}

void SchedulesViewModel::update()
{
    QList<ScheduleRow> rows;
    for (const auto& schedule : m_session.schedules.value())
        rows.push_back(scheduleDetailRow(schedule));
    m_schedules.setRows(std::move(rows));
    if (std::ranges::count(m_schedules.rows(), m_idToDelete, &ScheduleRow::id) == 0)
        m_idToDelete.clear(); // it has gone by itself
    Q_EMIT changed();
}

} // namespace stillgate
