#include "Platform/Linux/Shell/QuitRequests.h"

#include <QCoreApplication>
#include <QEvent>

namespace stillgate
{

QuitRequests::QuitRequests(std::function<void()> onRequest)
    : m_onRequest(std::move(onRequest))
{
    QCoreApplication::instance()->installEventFilter(this);
}

bool QuitRequests::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::Quit || watched != QCoreApplication::instance())
        return QObject::eventFilter(watched, event);
    m_onRequest();
    return true;
}

} // namespace stillgate
