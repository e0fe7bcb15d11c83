#include "Views/Windows/CommandKeys.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QWindow>

namespace stillgate
{

namespace
{

/// The number of a Latin letter, as X11 and Wayland number keys (keysymdef.h), is its code.
constexpr quint32 lastLatinKey = 0x7f;

std::string charactersOf(const QKeyEvent& event)
{
    // The native number alone knows Caps Lock. It is 0 where the platform has none.
    const auto native = event.nativeVirtualKey();
    if (native > 0 && native <= lastLatinKey)
        return {static_cast<char>(native)};
    if (event.key() < Qt::Key_A || event.key() > Qt::Key_Z)
        return {};
    const int lowerCase = (event.modifiers() & Qt::ShiftModifier) != 0 ? 0 : 'a' - 'A';
    return {static_cast<char>(event.key() + lowerCase)};
}

} // namespace

CommandKeys::CommandKeys(Handler handler)
    : m_handler(std::move(handler))
{
    QCoreApplication::instance()->installEventFilter(this);
}

bool CommandKeys::eventFilter(QObject* watched, QEvent* event)
{
    // A window gets the key first; its items get copies.
    if (event->type() == QEvent::KeyPress && qobject_cast<QWindow*>(watched) != nullptr) {
        const auto& key = *static_cast<QKeyEvent*>(event);
        const bool isCommand = (key.modifiers() & Qt::ControlModifier) != 0 && !key.isAutoRepeat();
        if (isCommand && m_handler(charactersOf(key)))
            return true;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace stillgate
