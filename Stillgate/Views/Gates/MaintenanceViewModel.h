#pragma once

#include "App/SessionData.h"

#include <QObject>
#include <qqmlregistration.h>

namespace stillgate
{

/// What the maintenance window shows.
class MaintenanceViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made with its window")

    Q_PROPERTY(QString message READ message NOTIFY changed)

public:
    explicit MaintenanceViewModel(SessionData& session);

    /// The backend's words; ours, if it has none.
    [[nodiscard]] QString message() const;

Q_SIGNALS:
    void changed();

private:
    SessionData& m_session;
    QPropertyNotifier m_notifier;
};

} // namespace stillgate
