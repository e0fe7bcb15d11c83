#pragma once

#include "App/SessionData.h"
#include "Platform/Clock.h"
#include "Platform/Host.h"
#include "Platform/Scheduler.h"
#include "Views/Common/Figure.h"

#include <QColor>
#include <QList>
#include <QObject>
#include <QUrl>
#include <qqmlregistration.h>

#include <filesystem>

namespace stillgate
{

/// A day of this week: today, one of the streak before it, or neither.
struct StreakDay
{
    Q_GADGET
    QML_VALUE_TYPE(streakDay)
    Q_PROPERTY(QString letter MEMBER letter CONSTANT)
    Q_PROPERTY(QString spoken MEMBER spoken CONSTANT)
    Q_PROPERTY(bool isToday MEMBER isToday CONSTANT)
    Q_PROPERTY(bool isDone MEMBER isDone CONSTANT)

public:
    QString letter;
    QString spoken; ///< for screen readers
    bool isToday = false;
    bool isDone = false;
};

/// A length that a streak may reach.
struct Milestone
{
    Q_GADGET
    QML_VALUE_TYPE(milestone)
    Q_PROPERTY(QUrl illustration MEMBER illustration CONSTANT)
    Q_PROPERTY(QString symbol MEMBER symbol CONSTANT)
    Q_PROPERTY(QColor color MEMBER color CONSTANT)
    Q_PROPERTY(QString name MEMBER name CONSTANT)
    Q_PROPERTY(QString description MEMBER description CONSTANT)
    Q_PROPERTY(QString days MEMBER days CONSTANT)
    Q_PROPERTY(QString spoken MEMBER spoken CONSTANT)
    Q_PROPERTY(bool isReached MEMBER isReached CONSTANT)

public:
    QUrl illustration; ///< empty if it isn't there: then the symbol stands for it
    QString symbol;
    QColor color; ///< of the symbol
    QString name;
    QString description;
    QString days;   ///< "30 days"
    QString spoken; ///< for screen readers
    bool isReached = false;
};

/// The user's run of good days.
class StreakViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made with its tab")

    Q_PROPERTY(QString dayCount READ dayCount NOTIFY changed)
    Q_PROPERTY(QList<stillgate::StreakDay> week READ week NOTIFY changed)
    Q_PROPERTY(QList<stillgate::Figure> figures READ figures NOTIFY changed)
    Q_PROPERTY(QList<stillgate::Milestone> milestones READ milestones NOTIFY changed)

public:
    /// `bundle`: where the illustrations are.
    StreakViewModel(
        SessionData& session, const Clock& clock, Scheduler& scheduler, const Host& host, std::filesystem::path bundle);

    [[nodiscard]] QString dayCount() const;
    /// From Monday to Sunday, whatever the user's country begins with.
    [[nodiscard]] QList<StreakDay> week() const;
    [[nodiscard]] QList<Figure> figures() const;
    [[nodiscard]] QList<Milestone> milestones() const;

Q_SIGNALS:
    void changed();

private:
    [[nodiscard]] std::chrono::weekday today() const { return m_host.weekday(m_clock.now()); }

    void noticeNewDay();

    SessionData& m_session;
    const Clock& m_clock;
    const Host& m_host;
    std::filesystem::path m_bundle;
    QPropertyNotifier m_notifier;
    std::chrono::weekday m_shownDay;
    std::unique_ptr<Timer> m_timer;
};

} // namespace stillgate
