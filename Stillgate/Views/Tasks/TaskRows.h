#pragma once

#include "Models/Tasks.h"

#include <QColor>
#include <QObject>
#include <qqmlregistration.h>

namespace stillgate
{

/// Whose tasks are looked at.
enum class TaskSide { assignee, assigner };

/// How the status of a task is shown. One that isn't known looks pending, and is told as the server says it.
struct TaskMark
{
    const char* symbol;
    QColor color;
    QString text;
};

[[nodiscard]] TaskMark taskMark(const std::string& status);

/// A task, as it is shown to one of the two. What there is nothing to say about is empty.
struct TaskRow
{
    Q_GADGET
    QML_VALUE_TYPE(taskRow)
    Q_PROPERTY(QString id MEMBER id CONSTANT)
    Q_PROPERTY(QString title MEMBER title CONSTANT)
    Q_PROPERTY(QString symbol MEMBER symbol CONSTANT)
    Q_PROPERTY(QColor color MEMBER color CONSTANT)
    Q_PROPERTY(QString rewardText MEMBER rewardText CONSTANT)
    Q_PROPERTY(QString fromText MEMBER fromText CONSTANT)
    Q_PROPERTY(QString statusText MEMBER statusText CONSTANT)
    Q_PROPERTY(QString completeTitle MEMBER completeTitle CONSTANT)
    Q_PROPERTY(QString completeSymbol MEMBER completeSymbol CONSTANT)
    Q_PROPERTY(bool canBeJudged MEMBER canBeJudged CONSTANT)
    Q_PROPERTY(QString earnedText MEMBER earnedText CONSTANT)

public:
    QString id;
    QString title;
    QString symbol;
    QColor color;
    QString rewardText;
    QString fromText;
    QString statusText;
    QString completeTitle; ///< of the button with which the assignee says that it is done
    QString completeSymbol;
    bool canBeJudged = false; ///< it waits for the assigner to approve or reject it
    QString earnedText;       ///< the reward, once it has been granted

    bool operator==(const TaskRow&) const = default;
};

[[nodiscard]] TaskRow taskRow(const SGTask& task, TaskSide side);

} // namespace stillgate
