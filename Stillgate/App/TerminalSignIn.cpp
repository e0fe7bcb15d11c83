#include "App/TerminalSignIn.h"

#include "Localization/L.h"
#include "Platform/Text.h"

#include <ostream>

namespace stillgate
{

TerminalSignIn::TerminalSignIn(AppState& state, DeviceAuthorization& authorization, std::ostream& output)
    : m_state(state)
    , m_authorization(authorization)
    , m_output(output)
{}

Task<bool> TerminalSignIn::run()
{
    if (m_state.isOnboarding)
        m_state.finishOnboarding();
    co_await m_state.bootstrap();
    if (m_state.isAuthenticated) {
        tell(L.localized("desktop.signIn.alreadySignedIn"));
        co_return true;
    }
    if (!m_state.isBehindAGate())
        co_await authorize();

    if (m_state.isAuthenticated) {
        co_await m_state.refreshData(); // a start doesn't ask for the guardian's rules, and the cache shall have them
        const auto user = m_state.currentUser.value().value_or(SGUser{});
        tell(L.localized("desktop.signIn.done", {{"name", user.displayName.value_or(user.email)}}));
    } else if (m_state.isMaintenanceMode) {
        tell(m_state.maintenanceMessage.value().value_or(L.localized("extension.popup.maintenance")));
    } else if (m_state.requiresForceUpdate) {
        tell(m_state.forceUpdateMessage.value().value_or(L.localized("extension.popup.updateMsg")));
    } else if (m_authorization.isExpired) {
        tell(L.localized("desktop.signIn.expired"));
    } else {
        const auto reason = m_authorization.deviceAuthErrorMessage.value().value_or("");
        tell(L.localized("desktop.signIn.failed", {{"reason", reason}}));
    }
    co_return m_state.isAuthenticated;
}

Task<> TerminalSignIn::authorize()
{
    OneShotEvent isDecided;
    const auto look = [this, &isDecided] {
        const bool isOver = m_state.isAuthenticated || m_authorization.isExpired ||
            m_authorization.deviceAuthErrorMessage.value() || m_state.isBehindAGate();
        if (isOver && !m_authorization.isCompleting)
            isDecided.happen();
    };
    const auto onSession = m_state.isAuthenticated.addNotifier(look);
    const auto onMaintenance = m_state.isMaintenanceMode.addNotifier(look);
    const auto onForceUpdate = m_state.requiresForceUpdate.addNotifier(look);
    const auto onCompletion = m_authorization.isCompleting.addNotifier(look);
    const auto onExpiry = m_authorization.isExpired.addNotifier(look);
    const auto onError = m_authorization.deviceAuthErrorMessage.addNotifier(look);
    const auto onCode = m_authorization.deviceCode.addNotifier([this] { showLink(); });
    m_authorization.resumeOrStartDeviceAuth();
    co_await isDecided;
    m_authorization.stopPolling();
}

void TerminalSignIn::showLink()
{
    const auto& code = m_authorization.deviceCode.value();
    const auto page = code ? DeviceAuthorization::approvalPage(*code) : std::nullopt;
    if (!page)
        return;
    tell(L.localized("desktop.signIn.openLink"));
    tell("  " + *page);
    tell(L.localized("desktop.signIn.waiting"));
}

/// Each line at once: whoever reads a pipe waits for the link.
void TerminalSignIn::tell(std::string_view text)
{
    m_output << onOneLine(text) << std::endl;
}

} // namespace stillgate
