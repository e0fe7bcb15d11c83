#include "Views/Account/AccountViewModel.h"

#include "Models/JSONCoding.h"
#include "Views/Common/TextOf.h"
#include "Views/Common/WhenDone.h"

namespace stillgate
{

namespace
{

/// Into the clipboard, unless the session ends before: the next one to sit here isn't to find what was somebody else's.
Task<Result<void>> copyData(Backend* backend, Pasteboard* pasteboard, CancellationToken session)
{
    const auto data = co_await backend->exportUserData();
    if (!data)
        co_return std::unexpected{data.error()};
    const auto text = JSONEncoder{DateForm::secondsSince2001}.encode(*data);
    if (!text)
        co_return std::unexpected{text.error()};
    if (!session.isCancelled())
        pasteboard->setString(*text);
    co_return Result<void>{};
}

} // namespace

AccountViewModel::AccountViewModel(AppState& state, Backend& backend, Pasteboard& pasteboard)
    : m_state(state)
    , m_backend(backend)
    , m_pasteboard(pasteboard)
    , m_userNotifier(state.currentUser.addNotifier([this] { Q_EMIT changed(); }))
{}

QString AccountViewModel::user() const
{
    const auto& user = m_state.currentUser.value();
    return user ? QString::fromStdString(user->email) : textOf("desktop.menuBar.signInToStart");
}

QString AccountViewModel::exportTitle() const
{
    return m_isExporting ? textOf("account.exporting") : textOf("account.exportData");
}

QString AccountViewModel::deleteTitle() const
{
    return m_isDeleting ? textOf("common.loading") : textOf("account.deleteAccount");
}

void AccountViewModel::exportData()
{
    if (m_isExporting)
        return;
    begin(m_isExporting);
    whenDone(this, copyData(&m_backend, &m_pasteboard, m_state.sessionToken()),
        [this](const Result<void>& outcome) { end(m_isExporting, outcome); });
}

void AccountViewModel::askToDelete()
{
    m_showDeleteConfirm = !m_isDeleting;
    Q_EMIT changed();
}

void AccountViewModel::cancelDelete()
{
    m_showDeleteConfirm = false;
    Q_EMIT changed();
}

void AccountViewModel::deleteAccount()
{
    if (!m_showDeleteConfirm)
        return;
    m_showDeleteConfirm = false;
    begin(m_isDeleting);
    whenDone(this, m_state.deleteAccount(), [this](const Result<void>& outcome) { end(m_isDeleting, outcome); });
}

void AccountViewModel::begin(bool& isRunning)
{
    isRunning = true;
    m_errorMessage.clear();
    Q_EMIT changed();
}

void AccountViewModel::end(bool& isRunning, const Result<void>& outcome)
{
    isRunning = false;
    if (!outcome)
        m_errorMessage = textOf("errors.generic");
    Q_EMIT changed();
}

} // namespace stillgate
