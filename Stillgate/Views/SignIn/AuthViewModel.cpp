#include "Views/SignIn/AuthViewModel.h"

#include "Views/Common/TextOf.h"

namespace stillgate
{

AuthViewModel::AuthViewModel(DeviceAuthorization& authorization)
    : m_authorization(authorization)
{
    const auto notify = [this] { Q_EMIT changed(); };
    m_notifiers.push_back(authorization.deviceCode.addNotifier(notify));
    m_notifiers.push_back(authorization.isExpired.addNotifier(notify));
    m_notifiers.push_back(authorization.isRequestingDeviceCode.addNotifier(notify));
    m_notifiers.push_back(authorization.deviceAuthErrorMessage.addNotifier(notify));
}

AuthViewModel::Phase AuthViewModel::phase() const
{
    if (m_authorization.isExpired)
        return Phase::Expired;
    return m_authorization.deviceAuthErrorMessage.value() ? Phase::Failed : Phase::Waiting;
}

QString AuthViewModel::symbol() const
{
    if (isWaiting())
        return {};
    return phase() == Phase::Expired ? "clock.badge.exclamationmark" : "exclamationmark.triangle";
}

QString AuthViewModel::message() const
{
    switch (phase()) {
    case Phase::Expired:
        return textOf("desktop.linkDevice.expired");
    case Phase::Failed:
        return QString::fromStdString(*m_authorization.deviceAuthErrorMessage.value());
    case Phase::Waiting:
        break;
    }
    return textOf("desktop.linkDevice.preparing");
}

bool AuthViewModel::canOpenBrowser() const
{
    return m_authorization.deviceCode.value() && !m_authorization.isRequestingDeviceCode && !m_authorization.isExpired;
}

} // namespace stillgate
