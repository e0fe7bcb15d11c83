#pragma once

#include "Backend/Backend.h"
#include "Views/Common/Figure.h"

#include <QList>
#include <QObject>
#include <QStringList>
#include <qqmlregistration.h>

namespace stillgate
{

/// A day of the chart.
struct DayBar
{
    Q_GADGET
    QML_VALUE_TYPE(dayBar)
    Q_PROPERTY(QString day MEMBER day CONSTANT)
    Q_PROPERTY(QString hours MEMBER hours CONSTANT)
    Q_PROPERTY(double height MEMBER height CONSTANT)

public:
    QString day;       ///< "15", of the month
    QString hours;     ///< "2h", whole ones
    double height = 0; ///< logical pixels
};

/// What a part of a day went to: a category, or an app.
struct UsageShare
{
    Q_GADGET
    QML_VALUE_TYPE(usageShare)
    Q_PROPERTY(QString category MEMBER category CONSTANT)
    Q_PROPERTY(QString name MEMBER name CONSTANT)
    Q_PROPERTY(double share MEMBER share CONSTANT)
    Q_PROPERTY(QString minutes MEMBER minutes CONSTANT)

public:
    QString category; ///< such as "gaming"; empty for an app
    QString name;
    double share = 0; ///< of the day; above 1 where several apps or devices count at once
    QString minutes;  ///< "1h 5m"
};

/// The report of a week or a month. It loads when it is made, and again for each period that is chosen.
class ScreenTimeViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made with its tab")

    Q_PROPERTY(QStringList periods READ periods CONSTANT)
    Q_PROPERTY(int selectedPeriod READ selectedPeriod NOTIFY changed)
    Q_PROPERTY(bool isLoading READ isLoading NOTIFY changed)
    Q_PROPERTY(bool hasReport READ hasReport NOTIFY changed)
    Q_PROPERTY(QList<stillgate::Figure> figures READ figures NOTIFY changed)
    Q_PROPERTY(QList<stillgate::DayBar> days READ days NOTIFY changed)
    Q_PROPERTY(QList<stillgate::UsageShare> categories READ categories NOTIFY changed)
    Q_PROPERTY(QList<stillgate::UsageShare> apps READ apps NOTIFY changed)

public:
    explicit ScreenTimeViewModel(Backend& backend);

    /// How the periods are called.
    [[nodiscard]] static QStringList periods();

    [[nodiscard]] int selectedPeriod() const { return m_selectedPeriod; }

    [[nodiscard]] bool isLoading() const { return m_isLoading; }

    /// Not while it loads: the other period's would be taken for the chosen one's.
    [[nodiscard]] bool hasReport() const { return m_report.has_value(); }

    [[nodiscard]] QList<Figure> figures() const;
    /// The last seven at most.
    [[nodiscard]] QList<DayBar> days() const;
    /// Of the last day, the largest first.
    [[nodiscard]] QList<UsageShare> categories() const;
    /// Of the last day, ten at most.
    [[nodiscard]] QList<UsageShare> apps() const;

    Q_INVOKABLE void select(int period);

Q_SIGNALS:
    void changed();

private:
    void load();
    [[nodiscard]] const DailyScreenTime* lastDay() const;

    Backend& m_backend;
    std::optional<ScreenTimeReport> m_report;
    int m_selectedPeriod = 0;
    bool m_isLoading = false;
    int m_loads = 0; ///< begun: only the answer to the last one counts
};

} // namespace stillgate
