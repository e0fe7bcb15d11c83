#pragma once

#include "App/SessionData.h"
#include "Platform/NotificationCenter.h"

#include <QObject>
#include <qqmlregistration.h>

#include <functional>
#include <vector>

namespace stillgate
{

/// What the panel beside the status item shows.
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

public:
    struct Actions
    {
        std::function<void()> refresh;
        std::function<void()> quit;
    };

    PopoverViewModel(SessionData& session, NotificationCenter& notifications, Actions actions);

    [[nodiscard]] bool isAuthenticated() const { return m_session.isAuthenticated; }

    [[nodiscard]] bool isProtected() const { return m_session.isAuthenticated && m_session.isBlockingActive; }

    /// Not while a start may yet find a session.
    [[nodiscard]] bool offersSignIn() const { return !m_session.isAuthenticated && !m_session.isStarting; }

    [[nodiscard]] QString statusText() const;

    [[nodiscard]] bool isOffline() const { return m_session.isAuthenticated && m_session.isOffline; }

    Q_INVOKABLE void signIn() { m_notifications.post(sgOpenAuthWindow); }

    Q_INVOKABLE void refresh() { m_actions.refresh(); }

    Q_INVOKABLE void quit() { m_actions.quit(); }

Q_SIGNALS:
    void changed();

private:
    SessionData& m_session;
    NotificationCenter& m_notifications;
    Actions m_actions;
    std::vector<QPropertyNotifier> m_notifiers;
};

} // namespace stillgate
