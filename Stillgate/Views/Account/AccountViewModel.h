#pragma once

#include "App/AppState.h"
#include "Platform/Pasteboard.h"

#include <QObject>
#include <qqmlregistration.h>

namespace stillgate
{

/// The user's own account: a copy of its data, signing out, and its end.
class AccountViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made with its tab")

    Q_PROPERTY(QString user READ user NOTIFY changed)
    Q_PROPERTY(QString errorMessage READ errorMessage NOTIFY changed)
    Q_PROPERTY(bool isExporting READ isExporting NOTIFY changed)
    Q_PROPERTY(bool isDeleting READ isDeleting NOTIFY changed)
    Q_PROPERTY(bool showDeleteConfirm READ showDeleteConfirm NOTIFY changed)
    Q_PROPERTY(QString exportTitle READ exportTitle NOTIFY changed)
    Q_PROPERTY(QString deleteTitle READ deleteTitle NOTIFY changed)

public:
    AccountViewModel(AppState& state, Backend& backend, Pasteboard& pasteboard);

    /// Their address; while nobody is known, what to do about it.
    [[nodiscard]] QString user() const;

    /// Of the last export or deletion; empty for none.
    [[nodiscard]] const QString& errorMessage() const { return m_errorMessage; }

    [[nodiscard]] bool isExporting() const { return m_isExporting; }

    [[nodiscard]] bool isDeleting() const { return m_isDeleting; }

    /// Whether the user is asked once more.
    [[nodiscard]] bool showDeleteConfirm() const { return m_showDeleteConfirm; }

    [[nodiscard]] QString exportTitle() const;
    [[nodiscard]] QString deleteTitle() const;

    /// To the clipboard, as JSON.
    Q_INVOKABLE void exportData();

    Q_INVOKABLE void signOut() { m_state.logout(); }

    Q_INVOKABLE void askToDelete();
    Q_INVOKABLE void cancelDelete();
    Q_INVOKABLE void deleteAccount();

Q_SIGNALS:
    void changed();

private:
    void begin(bool& isRunning);
    void end(bool& isRunning, const Result<void>& outcome);

    AppState& m_state;
    Backend& m_backend;
    Pasteboard& m_pasteboard;
    QPropertyNotifier m_userNotifier;
    QString m_errorMessage;
    bool m_isExporting = false;
    bool m_isDeleting = false;
    bool m_showDeleteConfirm = false;
};

} // namespace stillgate
