#pragma once

#include "App/DeviceAuthorization.h"

#include <QObject>
#include <qqmlregistration.h>

#include <vector>

namespace stillgate
{

/// What the sign-in window shows of a device authorization.
class AuthViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made with its window")

    Q_PROPERTY(Phase phase READ phase NOTIFY changed)
    Q_PROPERTY(bool isWaiting READ isWaiting NOTIFY changed)
    Q_PROPERTY(QString symbol READ symbol NOTIFY changed)
    Q_PROPERTY(QString message READ message NOTIFY changed)
    Q_PROPERTY(bool canOpenBrowser READ canOpenBrowser NOTIFY changed)

public:
    enum class Phase { // QML sees names with a capital only
        Waiting,       ///< for the code, then for the user's word in the browser
        Expired,       ///< a new code has to be asked for
        Failed,        ///< `message` says why
    };
    Q_ENUM(Phase)

    explicit AuthViewModel(DeviceAuthorization& authorization);

    [[nodiscard]] Phase phase() const;

    [[nodiscard]] bool isWaiting() const { return phase() == Phase::Waiting; }

    /// Of what went wrong; none while it waits.
    [[nodiscard]] QString symbol() const;
    [[nodiscard]] QString message() const;
    [[nodiscard]] bool canOpenBrowser() const;

    Q_INVOKABLE void appear() { m_authorization.resumeOrStartDeviceAuth(); }

    Q_INVOKABLE void disappear() { m_authorization.stopPolling(); }

    Q_INVOKABLE void tryAgain() { m_authorization.loadDeviceCode(); }

    /// What the user most likely wants next.
    Q_INVOKABLE void confirm() { isWaiting() ? openBrowser() : tryAgain(); }

    Q_INVOKABLE void openBrowser() { m_authorization.openBrowser(); }

Q_SIGNALS:
    void changed();

private:
    DeviceAuthorization& m_authorization;
    std::vector<QPropertyNotifier> m_notifiers;
};

} // namespace stillgate
