#include "Views/Popover/PopoverViewModel.h"

namespace stillgate
{

PopoverViewModel::PopoverViewModel(SessionData& session, NotificationCenter& notifications, Actions actions)
    : m_session(session)
    , m_notifications(notifications)
    , m_actions(std::move(actions))
{
    for (auto* field : {&session.isAuthenticated, &session.isBlockingActive, &session.isOffline})
        m_notifiers.push_back(field->addNotifier([this] { Q_EMIT changed(); }));
}

} // namespace stillgate
