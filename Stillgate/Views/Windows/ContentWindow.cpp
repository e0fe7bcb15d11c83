#include "Views/Windows/ContentWindow.h"

#include "DesignSystem/Tokens.h"

#include <QIcon>
#include <QScreen>

#include <utility>

namespace stillgate
{

namespace
{

QString qString(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace

ContentWindow::ContentWindow(QQmlEngine& engine, const WindowDescription& description, Screen screen)
    : m_screen(std::move(screen))
    , m_view(&engine, nullptr)
{
    const auto available = m_view.screen()->availableGeometry();
    const auto size = QSize{description.width, description.height}.boundedTo(available.size());
    m_view.setTitle(qString(description.title));
    m_view.setColor(tokens().sgBgPrimary); // what shows before the first frame
    m_view.setMinimumSize(QSize{description.minimumWidth, description.minimumHeight}.boundedTo(size));
    QRect place{{}, size};
    place.moveCenter(available.center());
    m_view.setGeometry(place);
    show(m_screen, m_view);
}

void ContentWindow::bringToFront()
{
    if (m_view.windowStates() & Qt::WindowMinimized)
        m_view.showNormal();
    m_view.show();
    m_view.raise();
    m_view.requestActivate();
}

/// Not from within the window's own event.
void ContentWindow::onClose(std::function<void()> action)
{
    QObject::connect(
        &m_view, &QWindow::visibleChanged, &m_view,
        [action = std::move(action), isClosed = false](bool isVisible) mutable {
            if (!isVisible && !std::exchange(isClosed, true))
                action();
        },
        Qt::QueuedConnection);
}

} // namespace stillgate
