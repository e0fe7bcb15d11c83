#pragma once

#include "App/OwnRules.h"
#include "Platform/Host.h"

#include <QList>
#include <QObject>
#include <qqmlregistration.h>

#include <set>

namespace stillgate
{

/// The form of a new schedule.
class CreateScheduleViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to the list of schedules")

    Q_PROPERTY(QString name READ name WRITE setName NOTIFY changed)
    Q_PROPERTY(QList<QString> typeTitles READ typeTitles CONSTANT)
    Q_PROPERTY(int selectedType READ selectedType NOTIFY changed)
    Q_PROPERTY(bool isRecurring READ isRecurring NOTIFY changed)
    Q_PROPERTY(QList<QString> dayLabels READ dayLabels CONSTANT)
    Q_PROPERTY(QList<QString> dayTitles READ dayTitles CONSTANT)
    Q_PROPERTY(QList<int> selectedDays READ selectedDays NOTIFY changed)
    Q_PROPERTY(QString startTime MEMBER m_startTime NOTIFY changed)
    Q_PROPERTY(QString endTime MEMBER m_endTime NOTIFY changed)
    Q_PROPERTY(bool canCreate READ canCreate NOTIFY changed)
    Q_PROPERTY(QString confirmTitle READ confirmTitle NOTIFY changed)
    Q_PROPERTY(QString confirmSymbol READ confirmSymbol NOTIFY changed)

public:
    CreateScheduleViewModel(OwnRules& ownRules, const Host& host);

    [[nodiscard]] const QString& name() const { return m_name; }

    void setName(const QString& name);

    [[nodiscard]] static QList<QString> typeTitles();

    [[nodiscard]] int selectedType() const { return m_selectedType; }

    /// Days and times belong to it.
    [[nodiscard]] bool isRecurring() const;

    /// Monday first, as in `selectedDays`: a letter each, and the name.
    [[nodiscard]] static QList<QString> dayLabels();
    [[nodiscard]] static QList<QString> dayTitles();

    [[nodiscard]] QList<int> selectedDays() const { return {m_selectedDays.begin(), m_selectedDays.end()}; }

    [[nodiscard]] bool canCreate() const { return !m_name.isEmpty() && !m_isCreating; }

    [[nodiscard]] QString confirmTitle() const;
    [[nodiscard]] QString confirmSymbol() const;

    Q_INVOKABLE void chooseType(int index);
    Q_INVOKABLE void toggleDay(int day);

    /// Once: the form is done with it, whatever the server says.
    Q_INVOKABLE void create();

Q_SIGNALS:
    void changed();
    void finished();

private:
    [[nodiscard]] BlockSchedule schedule() const;

    OwnRules& m_ownRules;
    const Host& m_host;
    QString m_name;
    int m_selectedType;
    std::set<int> m_selectedDays{0, 1, 2, 3, 4};
    QString m_startTime = "09:00";
    QString m_endTime = "17:00";
    bool m_isCreating = false;
};

} // namespace stillgate
