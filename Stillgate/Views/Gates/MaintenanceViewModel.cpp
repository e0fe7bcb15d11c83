#include "Views/Gates/MaintenanceViewModel.h"

#include "Localization/L.h"

namespace stillgate
{

MaintenanceViewModel::MaintenanceViewModel(SessionData& session)
    : m_session(session)
    , m_notifier(session.maintenanceMessage.addNotifier([this] { Q_EMIT changed(); }))
{}

QString MaintenanceViewModel::message() const
{
    const auto& message = m_session.maintenanceMessage.value();
    return QString::fromStdString(message ? *message : L.localized("extension.popup.maintenanceMsg"));
}

} // namespace stillgate
