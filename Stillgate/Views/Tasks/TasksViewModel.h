#pragma once

#include "Backend/Backend.h"
#include "Views/Common/RowsModel.h"
#include "Views/Tasks/CreateTaskViewModel.h"
#include "Views/Tasks/TaskRows.h"

#include <array>
#include <memory>

namespace stillgate
{

/// The tasks that the user has to do, and those that they gave; they are loaded when it is made and after each change.
class TasksViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made with its tab")

    Q_PROPERTY(QAbstractItemModel* tasks READ tasks CONSTANT)
    Q_PROPERTY(QList<QString> segmentTitles READ segmentTitles CONSTANT)
    Q_PROPERTY(int selectedSegment READ selectedSegment WRITE selectSegment NOTIFY changed)
    Q_PROPERTY(QList<QString> filterTitles READ filterTitles NOTIFY changed)
    Q_PROPERTY(QList<QString> filterSymbols READ filterSymbols CONSTANT)
    Q_PROPERTY(int selectedFilter READ selectedFilter WRITE selectFilter NOTIFY changed)
    Q_PROPERTY(bool isLoading READ isLoading NOTIFY changed)
    Q_PROPERTY(QString emptySymbol READ emptySymbol NOTIFY changed)
    Q_PROPERTY(stillgate::CreateTaskViewModel* createSheet READ createSheet NOTIFY changed)

public:
    explicit TasksViewModel(Backend& backend);
    ~TasksViewModel() override;

    /// None while they are loaded.
    [[nodiscard]] QAbstractItemModel* tasks() { return &m_rows; }

    [[nodiscard]] static QList<QString> segmentTitles();

    [[nodiscard]] int selectedSegment() const { return m_selectedSegment; }

    void selectSegment(int segment);

    /// Each with how many tasks it would show.
    [[nodiscard]] QList<QString> filterTitles() const;
    [[nodiscard]] static QList<QString> filterSymbols();

    [[nodiscard]] int selectedFilter() const { return m_selectedFilter; }

    void selectFilter(int filter);

    [[nodiscard]] bool isLoading() const { return m_isLoading; }

    /// Of what stands in place of the tasks; empty if there are some, or may be.
    [[nodiscard]] QString emptySymbol() const;

    /// Null while none is open.
    [[nodiscard]] CreateTaskViewModel* createSheet() const { return m_createSheet.get(); }

    Q_INVOKABLE void openCreateSheet();
    Q_INVOKABLE void closeCreateSheet();

    Q_INVOKABLE void complete(const QString& id);
    Q_INVOKABLE void approve(const QString& id);
    Q_INVOKABLE void reject(const QString& id);

Q_SIGNALS:
    void changed();

private:
    using Tasks = std::vector<SGTask>;

    void load();
    void loadSegment(int segment);
    void finishLoad();
    void create(CreateTaskBody body);
    void replaceEverywhere(const SGTask& task);
    void update();

    [[nodiscard]] const Tasks& tasksOfSegment() const;

    Backend& m_backend;
    std::array<Tasks, 2> m_tasks; ///< by segment
    int m_selectedSegment = 0;
    int m_selectedFilter = 0;
    bool m_isLoading = false;
    CancellationSource m_load; ///< of the last load; the ones before it are of no use any more
    RowsModel<TaskRow> m_rows;
    std::unique_ptr<CreateTaskViewModel> m_createSheet;
    bool m_isSheetDone = false; ///< it goes with the end of the load
};

} // namespace stillgate
