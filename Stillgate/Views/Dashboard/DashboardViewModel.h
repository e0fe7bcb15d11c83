#pragma once

#include "App/AppState.h"
#include "Views/Common/Figure.h"
#include "Views/Common/RowsModel.h"
#include "Views/Protection/RuleRows.h"
#include "Views/Schedules/ScheduleRows.h"

#include <QColor>
#include <QObject>
#include <qqmlregistration.h>

#include <vector>

namespace stillgate
{

/// A task in brief, with its state in words.
struct DashboardTaskRow
{
    Q_GADGET
    QML_VALUE_TYPE(dashboardTaskRow)
    Q_PROPERTY(QString symbol MEMBER symbol CONSTANT)
    Q_PROPERTY(QColor color MEMBER color CONSTANT)
    Q_PROPERTY(QString title MEMBER title CONSTANT)
    Q_PROPERTY(QString reward MEMBER reward CONSTANT)
    Q_PROPERTY(QString status MEMBER status CONSTANT)
    Q_PROPERTY(QColor statusColor MEMBER statusColor CONSTANT)

public:
    QString id;
    QString symbol;
    QColor color;
    QString title;
    QString reward;
    QString status;
    QColor statusColor;

    bool operator==(const DashboardTaskRow&) const = default;
};

[[nodiscard]] DashboardTaskRow dashboardTaskRow(const SGTask& task);

/// The whole protection at a glance. It brings the session up to date when it is shown.
class DashboardViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made with its tab")

    Q_PROPERTY(bool isBlockingActive READ isBlockingActive NOTIFY changed)
    Q_PROPERTY(QString statusName READ statusName NOTIFY changed)
    Q_PROPERTY(QString statusText READ statusText NOTIFY changed)
    Q_PROPERTY(QList<stillgate::Figure> figures READ figures NOTIFY changed)
    Q_PROPERTY(bool hasLimit READ hasLimit NOTIFY changed)
    Q_PROPERTY(QString budgetText READ budgetText NOTIFY changed)
    Q_PROPERTY(QString earnedText READ earnedText NOTIFY changed)
    Q_PROPERTY(QString usedText READ usedText NOTIFY changed)
    Q_PROPERTY(double budgetFraction READ budgetFraction NOTIFY changed)
    Q_PROPERTY(bool hasTasks READ hasTasks NOTIFY changed)
    Q_PROPERTY(QAbstractItemModel* tasks READ tasks CONSTANT)
    Q_PROPERTY(QString completedTasksText READ completedTasksText NOTIFY changed)
    Q_PROPERTY(bool hasSchedules READ hasSchedules NOTIFY changed)
    Q_PROPERTY(QAbstractItemModel* schedules READ schedules CONSTANT)
    Q_PROPERTY(bool hasRules READ hasRules NOTIFY changed)
    Q_PROPERTY(QAbstractItemModel* rules READ rules CONSTANT)

public:
    DashboardViewModel(AppState& state, AppMonitor& monitor, NotificationCenter& notifications);

    [[nodiscard]] bool isBlockingActive() const { return m_state.isBlockingActive; }

    /// Whether the protection is on, for those who don't see the colour.
    [[nodiscard]] QString statusName() const;
    [[nodiscard]] QString statusText() const;
    [[nodiscard]] QList<Figure> figures() const;

    /// The budget shows only where there is a limit.
    [[nodiscard]] bool hasLimit() const;

    /// "35m / 75m".
    [[nodiscard]] QString budgetText() const;
    [[nodiscard]] QString earnedText() const;
    [[nodiscard]] QString usedText() const;

    /// Used minutes of those of the day; above 1 when they are used up.
    [[nodiscard]] double budgetFraction() const;

    [[nodiscard]] bool hasTasks() const { return !m_state.tasks.value().empty(); }

    /// The first that are to be done.
    [[nodiscard]] QAbstractItemModel* tasks() { return &m_tasks; }

    /// How many were approved; empty for none.
    [[nodiscard]] QString completedTasksText() const;

    [[nodiscard]] bool hasSchedules() const { return !m_schedules.rows().isEmpty(); }

    [[nodiscard]] QAbstractItemModel* schedules() { return &m_schedules; }

    [[nodiscard]] bool hasRules() const { return !m_rules.rows().isEmpty(); }

    [[nodiscard]] QAbstractItemModel* rules() { return &m_rules; }

    Q_INVOKABLE void viewAllTasks();

Q_SIGNALS:
    void changed();

private:
    void update();
    [[nodiscard]] ScreenTimeBudget budget() const;
    [[nodiscard]] std::int64_t minutesOfDay() const;

    AppState& m_state;
    AppMonitor& m_monitor;
    NotificationCenter& m_notifications;
    RowsModel<DashboardTaskRow> m_tasks;
    RowsModel<ScheduleRow> m_schedules;
    RowsModel<RuleRow> m_rules;
    std::vector<QPropertyNotifier> m_notifiers;
};

} // namespace stillgate
