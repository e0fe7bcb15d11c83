#pragma once

#include "App/SessionData.h"
#include "Platform/Bundle.h"
#include "Platform/Workspace.h"

#include <QObject>
#include <QUrl>
#include <qqmlregistration.h>

#include <vector>

namespace stillgate
{

/// What the window of a forced update shows.
class ForceUpdateViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made with its window")

    Q_PROPERTY(QString message READ message NOTIFY changed)
    Q_PROPERTY(QString currentVersion READ currentVersion CONSTANT)
    Q_PROPERTY(QString minVersion READ minVersion NOTIFY changed)
    Q_PROPERTY(QUrl illustration READ illustration CONSTANT)

public:
    ForceUpdateViewModel(SessionData& session, const Bundle& bundle, Workspace& workspace);

    /// The backend's words; ours, if it has none.
    [[nodiscard]] QString message() const;
    [[nodiscard]] QString currentVersion() const; ///< "v1.2.3"
    [[nodiscard]] QString minVersion() const;     ///< likewise
    [[nodiscard]] QUrl illustration() const;

    /// Opens the address that the backend gave; without one, nothing happens.
    Q_INVOKABLE void download();

Q_SIGNALS:
    void changed();

private:
    SessionData& m_session;
    const Bundle& m_bundle;
    Workspace& m_workspace;
    std::vector<QPropertyNotifier> m_notifiers;
};

} // namespace stillgate
