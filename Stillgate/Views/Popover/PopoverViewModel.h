#pragma once

#include "App/SessionData.h"
#include "Platform/Bundle.h"
#include "Platform/NotificationCenter.h"
#include "Platform/Pasteboard.h"
#include "Views/Common/Figure.h"
#include "Views/Protection/QuickBlockStatus.h"

#include <QList>
#include <QObject>
#include <qqmlregistration.h>

#include <functional>
#include <vector>

namespace stillgate
{

/// Something that the popover can do. The key is told, and works while the popover has the keyboard.
struct PopoverAction
{
    Q_GADGET
    QML_VALUE_TYPE(popoverAction)
    Q_PROPERTY(QString symbol MEMBER symbol CONSTANT)
    Q_PROPERTY(QString label MEMBER label CONSTANT)
    Q_PROPERTY(QString keyHint MEMBER keyHint CONSTANT)
    Q_PROPERTY(bool isDanger MEMBER isDanger CONSTANT)

public:
    QString symbol;
    QString label;
    QString keyHint;
    bool isDanger = false;
};

/// What the popover works with. All of it outlives it.
struct PopoverServices
{
    SessionData& session;
    AppMonitor& monitor;
    NotificationCenter& notifications;
    const Bundle& bundle;
    Pasteboard& pasteboard;
    const Clock& clock;
    Scheduler& scheduler;
    std::function<void()> showSettings;
    std::function<void()> refresh;
    std::function<void()> quit;
};

/// The panel beside the status item: the day at a glance, and the way to everything else.
class PopoverViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made with its window")

    Q_PROPERTY(bool isAuthenticated READ isAuthenticated NOTIFY changed)
    Q_PROPERTY(bool isProtected READ isProtected NOTIFY changed)
    Q_PROPERTY(bool offersSignIn READ offersSignIn NOTIFY changed)
    Q_PROPERTY(QString statusText READ statusText NOTIFY changed)
    Q_PROPERTY(bool isOffline READ isOffline NOTIFY changed)
    Q_PROPERTY(int streakDays READ streakDays NOTIFY changed)
    Q_PROPERTY(QList<stillgate::Figure> statuses READ statuses NOTIFY changed)
    Q_PROPERTY(QString sharingCode READ sharingCode NOTIFY changed)
    Q_PROPERTY(bool hasBudget READ hasBudget NOTIFY changed)
    Q_PROPERTY(double budgetFraction READ budgetFraction NOTIFY changed)
    Q_PROPERTY(bool hasQuickBlock READ hasQuickBlock NOTIFY changed)
    Q_PROPERTY(QString quickBlockText READ quickBlockText NOTIFY changed)
    Q_PROPERTY(QList<stillgate::PopoverAction> actions READ actions NOTIFY actionsChanged)

public:
    explicit PopoverViewModel(const PopoverServices& services);

    [[nodiscard]] bool isAuthenticated() const { return m_services.session.isAuthenticated; }

    [[nodiscard]] bool isProtected() const { return isAuthenticated() && m_services.session.isBlockingActive; }

    /// Not while a start may yet find a session.
    [[nodiscard]] bool offersSignIn() const { return !isAuthenticated() && !m_services.session.isStarting; }

    [[nodiscard]] QString statusText() const;

    [[nodiscard]] bool isOffline() const { return isAuthenticated() && m_services.session.isOffline; }

    [[nodiscard]] int streakDays() const
    {
        return static_cast<int>(m_services.session.streak.value().currentStreakDays);
    }

    [[nodiscard]] QList<Figure> statuses() const;

    /// Empty for none.
    [[nodiscard]] QString sharingCode() const;

    [[nodiscard]] bool hasBudget() const { return m_services.session.budget.value().has_value(); }

    /// Used minutes of those of the day; above 1 when they are used up.
    [[nodiscard]] double budgetFraction() const;

    [[nodiscard]] bool hasQuickBlock() const { return m_quickBlock.isRunning(); }

    [[nodiscard]] QString quickBlockText() const { return m_quickBlock.text(); }

    /// In their order on the panel; while nobody is signed in, the end of the program alone.
    [[nodiscard]] QList<PopoverAction> actions() const;

    Q_INVOKABLE void perform(const QString& keyHint);
    /// A key that was pressed with Control; true if it was an action's.
    Q_INVOKABLE bool performKey(const QString& letter);

    Q_INVOKABLE void signIn() { m_services.notifications.post(sgOpenAuthWindow); }

    Q_INVOKABLE void copyCode();
    Q_INVOKABLE void copyInviteLink();

    Q_INVOKABLE void endQuickBlock() { m_services.monitor.stopQuickBlock(); }

Q_SIGNALS:
    void changed();
    void actionsChanged(); ///< apart, so that a row keeps the keyboard when a figure changes

private:
    void openQuickBlock();

    PopoverServices m_services;
    QuickBlockStatus m_quickBlock;
    std::unique_ptr<Timer> m_quickBlockSoon;
    std::vector<QPropertyNotifier> m_notifiers;
};

} // namespace stillgate
