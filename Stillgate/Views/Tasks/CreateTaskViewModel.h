#pragma once

#include "Models/Tasks.h"

#include <QList>
#include <QObject>
#include <qqmlregistration.h>

#include <functional>

namespace stillgate
{

/// The form of a new task of the user's own.
class CreateTaskViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to the list of tasks")

    Q_PROPERTY(QString title MEMBER m_title NOTIFY changed)
    Q_PROPERTY(QString description MEMBER m_description NOTIFY changed)
    Q_PROPERTY(QList<QString> emojis READ emojis CONSTANT)
    Q_PROPERTY(int selectedEmoji MEMBER m_selectedEmoji NOTIFY changed)
    Q_PROPERTY(double rewardMinutes MEMBER m_rewardMinutes NOTIFY changed)
    Q_PROPERTY(QString rewardText READ rewardText NOTIFY changed)
    Q_PROPERTY(QList<QString> repeatTitles READ repeatTitles CONSTANT)
    Q_PROPERTY(int selectedRepeat MEMBER m_selectedRepeat NOTIFY changed)
    Q_PROPERTY(bool requiresProof MEMBER m_requiresProof NOTIFY changed)
    Q_PROPERTY(bool canCreate READ canCreate NOTIFY changed)

public:
    using Creation = std::function<void(CreateTaskBody)>;

    /// `create` is called once at most.
    explicit CreateTaskViewModel(Creation create);

    [[nodiscard]] static QList<QString> emojis();
    [[nodiscard]] static QList<QString> repeatTitles();
    [[nodiscard]] QString rewardText() const;

    [[nodiscard]] bool canCreate() const { return !m_title.isEmpty() && !m_isCreating; }

    Q_INVOKABLE void create();

Q_SIGNALS:
    void changed();

private:
    [[nodiscard]] CreateTaskBody body() const;

    Creation m_create;
    QString m_title;
    QString m_description;
    int m_selectedEmoji = 0;
    double m_rewardMinutes = 30; ///< 0 to 120, in steps of 5
    int m_selectedRepeat = 0;
    bool m_requiresProof = false;
    bool m_isCreating = false;
};

} // namespace stillgate
