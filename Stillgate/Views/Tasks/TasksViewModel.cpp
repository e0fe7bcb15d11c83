#include "Views/Tasks/TasksViewModel.h"

#include "Views/Common/TextOf.h"
#include "Views/Common/WhenDone.h"

#include <QPointer>

#include <algorithm>

namespace stillgate
{

namespace
{

constexpr int mine = 0;
constexpr int given = 1;

constexpr struct
{
    TaskSide side;
    const char* role; // as the server knows it
    const char* title;
    const char* emptySymbol;
} segments[] = {
    {TaskSide::assignee, "assignee", "tasks.title", "checkmark.circle"},
    {TaskSide::assigner, "assigner", "controller.assignTask", "person.badge.plus"},
};

constexpr struct
{
    std::string_view status; // of the tasks that it shows; empty for all
    const char* title;
    const char* symbol;
} filters[] = {
    {"", "common.viewAll", "tray.full"},
    {"pending", "common.inProgress", "clock"},
    {"approved", "common.completed", "checkmark.circle"},
};

bool isShown(const SGTask& task, std::string_view wantedStatus)
{
    return wantedStatus.empty() || task.status == wantedStatus;
}

SGTask* findTask(std::vector<SGTask>& tasks, const std::string& id)
{
    const auto found = std::ranges::find(tasks, id, &SGTask::id);
    return found != tasks.end() ? &*found : nullptr;
}

} // namespace

TasksViewModel::TasksViewModel(Backend& backend)
    : m_backend(backend)
{
    load();
}

TasksViewModel::~TasksViewModel()
{
    m_load.cancel();
}

QList<QString> TasksViewModel::segmentTitles()
{
    QList<QString> titles;
    for (const auto& segment : segments)
        titles << textOf(segment.title);
    return titles;
}

void TasksViewModel::selectSegment(int segment)
{
    m_selectedSegment = segment;
    update();
}

QList<QString> TasksViewModel::filterTitles() const
{
    QList<QString> titles;
    for (const auto& filter : filters) {
        const auto count =
            std::ranges::count_if(tasksOfSegment(), [&](const auto& task) { return isShown(task, filter.status); });
        titles << textOf(filter.title) + " · " + QString::number(count);
    }
    return titles;
}

QList<QString> TasksViewModel::filterSymbols()
{
    QList<QString> symbols;
    for (const auto& filter : filters)
        symbols << filter.symbol;
    return symbols;
}

void TasksViewModel::selectFilter(int filter)
{
    m_selectedFilter = filter;
    update();
}

QString TasksViewModel::emptySymbol() const
{
    if (m_isLoading || !m_rows.rows().isEmpty())
        return {};
    return m_selectedFilter == 0 ? segments[m_selectedSegment].emptySymbol : filters[m_selectedFilter].symbol;
}

void TasksViewModel::openCreateSheet()
{
    closeCreateSheet();
    m_createSheet = std::make_unique<CreateTaskViewModel>([this](CreateTaskBody body) { create(std::move(body)); });
    Q_EMIT changed();
}

void TasksViewModel::closeCreateSheet()
{
    if (!m_createSheet)
        return;
    m_isSheetDone = false;
    m_createSheet.release()->deleteLater(); // it may be what began this
    Q_EMIT changed();
}

/// Shown at once; if it fails, what the server holds takes its place.
void TasksViewModel::complete(const QString& id)
{
    const auto taskId = id.toStdString();
    if (auto* task = findTask(m_tasks[mine], taskId)) {
        task->status = "completed";
        update();
    }
    whenDone(this, m_backend.completeTask(taskId, std::nullopt), [this](const Result<SGTask>& answer) {
        if (answer)
            replaceEverywhere(*answer);
        else
            load();
    });
}

void TasksViewModel::approve(const QString& id)
{
    whenDone(this, m_backend.approveTask(id.toStdString()), [this](const Result<SGTask>&) { load(); });
}

void TasksViewModel::reject(const QString& id)
{
    whenDone(this, m_backend.rejectTask(id.toStdString(), std::nullopt), [this](const Result<SGTask>&) { load(); });
}

void TasksViewModel::load()
{
    m_load.cancel();
    m_load = {};
    m_isLoading = true;
    update();
    loadSegment(mine);
}

void TasksViewModel::loadSegment(int segment)
{
    const auto load = m_load.token();
    whenDone(this, m_backend.getTasks(segments[segment].role, load), [this, load, segment](Result<Tasks> answer) {
        if (load.isCancelled())
            return;
        m_tasks.at(segment) = std::move(answer).value_or(Tasks{});
        if (segment == mine)
            loadSegment(given);
        else
            finishLoad();
    });
}

void TasksViewModel::finishLoad()
{
    m_isLoading = false;
    update();
    if (m_isSheetDone)
        closeCreateSheet();
}

/// The list shows it before the form goes, whether or not the server took it. A form that was left goes before.
void TasksViewModel::create(CreateTaskBody body)
{
    const QPointer sheet{m_createSheet.get()};
    whenDone(this, m_backend.createTask(std::move(body)), [this, sheet](const Result<SGTask>&) {
        m_isSheetDone = m_isSheetDone || (sheet && sheet == m_createSheet.get());
        load();
    });
}

/// Somebody who gives a task to themselves has it on both sides.
void TasksViewModel::replaceEverywhere(const SGTask& task)
{
    for (auto& tasks : m_tasks) {
        if (auto* known = findTask(tasks, task.id))
            *known = task;
    }
    update();
}

void TasksViewModel::update()
{
    QList<TaskRow> rows;
    if (!m_isLoading) {
        for (const auto& task : tasksOfSegment()) {
            if (isShown(task, filters[m_selectedFilter].status))
                rows.push_back(taskRow(task, segments[m_selectedSegment].side));
        }
    }
    m_rows.setRows(std::move(rows));
    Q_EMIT changed();
}

const std::vector<SGTask>& TasksViewModel::tasksOfSegment() const
{
    return m_tasks.at(m_selectedSegment);
}

} // namespace stillgate
