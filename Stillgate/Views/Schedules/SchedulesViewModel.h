#pragma once

#include "App/OwnRules.h"
#include "Views/Common/RowsModel.h"
#include "Views/Schedules/CreateScheduleViewModel.h"
#include "Views/Schedules/ScheduleRows.h"

#include <memory>

namespace stillgate
{

/// The user's schedules, to which one can be added, and of which one can be deleted.
class SchedulesViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made with its tab")

    Q_PROPERTY(QAbstractItemModel* schedules READ schedules CONSTANT)
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY changed)
    Q_PROPERTY(stillgate::CreateScheduleViewModel* createSheet READ createSheet NOTIFY changed)
    Q_PROPERTY(bool asksToDelete READ asksToDelete NOTIFY changed)

public:
    SchedulesViewModel(SessionData& session, OwnRules& ownRules, const Host& host);
    ~SchedulesViewModel() override;

    [[nodiscard]] QAbstractItemModel* schedules() { return &m_schedules; }

    [[nodiscard]] bool isEmpty() const { return m_schedules.rows().isEmpty(); }

    /// Null while none is open.
    [[nodiscard]] CreateScheduleViewModel* createSheet() const { return m_createSheet.get(); }

    /// Whether the user is asked if one shall really go.
    [[nodiscard]] bool asksToDelete() const { return !m_idToDelete.isEmpty(); }

    Q_INVOKABLE void openCreateSheet();
    Q_INVOKABLE void closeCreateSheet();

    Q_INVOKABLE void askToDelete(const QString& id);
    Q_INVOKABLE void keep();
    Q_INVOKABLE void deleteForGood();

Q_SIGNALS:
    void changed();

private:
    void update();

    SessionData& m_session;
    OwnRules& m_ownRules;
    const Host& m_host;
    RowsModel<ScheduleRow> m_schedules;
    std::unique_ptr<CreateScheduleViewModel> m_createSheet;
    QString m_idToDelete; ///< empty while nobody is asked
    QPropertyNotifier m_notifier;
};

} // namespace stillgate
