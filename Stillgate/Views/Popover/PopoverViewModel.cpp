#include "Views/Popover/PopoverViewModel.h"

#include "Localization/L.h"

namespace stillgate
{

PopoverViewModel::PopoverViewModel(SessionData& session, NotificationCenter& notifications, Actions actions)
    : m_session(session)
    , m_notifications(notifications)
    , m_actions(std::move(actions))
{
    for (auto* field : {&session.isAuthenticated, &session.isBlockingActive, &session.isOffline, &session.isStarting})
        m_notifiers.push_back(field->addNotifier([this] { Q_EMIT changed(); }));
}

QString PopoverViewModel::statusText() const
{
    return QString::fromStdString(isProtected() ? L.localized("common.active") : L.localized("common.inactive"));
}

} // namespace stillgate
