#include "Views/Windows/PopoverWindow.h"

#include "DesignSystem/Tokens.h"
#include "Views/Popover/PopoverPlace.h"

#include <QCursor>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QScreen>

namespace stillgate
{

using namespace std::chrono_literals;

namespace
{

constexpr QSize popoverSize{360, 480};

QRect anchorOn(const std::optional<ScreenRectangle>& bounds)
{
    if (bounds)
        return {bounds->x, bounds->y, bounds->width, bounds->height};
    return {QCursor::pos(), QSize{1, 1}};
}

QScreen* screenOf(const QRect& anchor)
{
    auto* screen = QGuiApplication::screenAt(anchor.center());
    return screen != nullptr ? screen : QGuiApplication::primaryScreen();
}

} // namespace

PopoverWindow::PopoverWindow(QQmlEngine& engine, Screen screen, const Clock& clock)
    : m_screen(std::move(screen))
    , m_view(&engine, nullptr)
    , m_clock(clock)
{
    m_view.setTitle("Stillgate");
    m_view.setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    m_view.setColor(tokens().sgBgPrimary);
    m_view.resize(popoverSize);
    stillgate::show(m_screen, m_view);
    m_view.installEventFilter(this);
}

bool PopoverWindow::isShown() const
{
    constexpr auto aClickLater = 250ms;
    const bool hasJustGone = m_lostKeyboard && m_clock.monotonicNow() - *m_lostKeyboard < aClickLater;
    return m_view.isVisible() || hasJustGone;
}

void PopoverWindow::close()
{
    m_view.hide();
    m_lostKeyboard.reset();
}

void PopoverWindow::show(const std::optional<ScreenRectangle>& anchor)
{
    const auto place = anchorOn(anchor);
    auto* screen = screenOf(place);
    m_view.setScreen(screen);
    m_view.setGeometry(popoverPlace(place, screen->availableGeometry(), popoverSize));
    m_view.show();
    m_view.raise();
    m_view.requestActivate();
}

bool PopoverWindow::eventFilter(QObject* watched, QEvent* event)
{
    const bool isEscape = event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape;
    if (isEscape) {
        close();
        return true;
    }
    // Hiding takes the keyboard away too.
    if (event->type() == QEvent::FocusOut && m_view.isVisible()) {
        close();
        m_lostKeyboard = m_clock.monotonicNow();
    }
    return QObject::eventFilter(watched, event);
}

} // namespace stillgate
