#include "Views/SignIn/AuthViewModel.h"

#include "Views/Common/Follow.h"
#include "Views/Common/TextOf.h"

namespace stillgate
{

AuthViewModel::AuthViewModel(DeviceAuthorization& authorization)
    : m_authorization(authorization)
    , m_notifiers(follow([this] { Q_EMIT changed(); }, authorization.deviceCode, authorization.isExpired,
          authorization.isRequestingDeviceCode, authorization.deviceAuthErrorMessage))
{}

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
