#pragma once

#include "Models/Schedules.h"

#include <QObject>
#include <qqmlregistration.h>

namespace stillgate
{

/// A schedule, as it is shown.
struct ScheduleRow
{
    Q_GADGET
    QML_VALUE_TYPE(scheduleRow)
    Q_PROPERTY(QString id MEMBER id CONSTANT)
    Q_PROPERTY(QString name MEMBER name CONSTANT)
    Q_PROPERTY(QString subtitle MEMBER subtitle CONSTANT)
    Q_PROPERTY(QString rulesText MEMBER rulesText CONSTANT)
    Q_PROPERTY(bool isEnabled MEMBER isEnabled CONSTANT)
    Q_PROPERTY(QString statusText MEMBER statusText CONSTANT)

public:
    QString id;
    QString name;
    QString subtitle;  ///< its days and times; empty if it has none
    QString rulesText; ///< how many rules hang on it; empty for none
    bool isEnabled = false;
    QString statusText;

    bool operator==(const ScheduleRow&) const = default;
};

/// In brief, as the dashboard shows it.
[[nodiscard]] ScheduleRow scheduleRow(const BlockSchedule& schedule);

/// As the list of the schedules shows it.
[[nodiscard]] ScheduleRow scheduleDetailRow(const BlockSchedule& schedule);

} // namespace stillgate
