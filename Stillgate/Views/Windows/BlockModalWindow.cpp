#include "Views/Windows/BlockModalWindow.h"

#include "DesignSystem/Tokens.h"

#include <QBitmap>
#include <QGuiApplication>
#include <QPainter>
#include <QPointer>
#include <QQuickItem>
#include <QScreen>

namespace stillgate
{

namespace
{

/// The screen on which the rectangle, in pixels, has its centre.
QScreen* screenAt(const std::optional<ScreenRectangle>& place)
{
    if (place) {
        const QPoint centre{place->x + (place->width / 2), place->y + (place->height / 2)};
        for (auto* screen : QGuiApplication::screens()) {
            // Qt scales the size of a screen, and leaves its corner where it is.
            const QRect pixels{screen->geometry().topLeft(), screen->geometry().size() * screen->devicePixelRatio()};
            if (pixels.contains(centre))
                return screen;
        }
    }
    return QGuiApplication::primaryScreen();
}

/// Round corners where nobody can see through a window.
QRegion roundedRegion(QSize size, int radius)
{
    QBitmap bits{size};
    bits.clear();
    QPainter painter{&bits};
    painter.setBrush(Qt::color1);
    painter.drawRoundedRect(QRect{{}, size}, radius, radius);
    painter.end();
    return bits;
}

} // namespace

/// Hidden at first; it owns its screen.
class BlockModalWindow::View final : public QQuickView
{
public:
    View(QQmlEngine& engine, Screen screen)
        : QQuickView(&engine, nullptr)
        , m_screen(std::move(screen))
    {
        setTitle("Stillgate");
        setFlags(Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::BypassWindowManagerHint);
    }

    ~View() override { setSource({}); } // what is laid out goes before what it lays out

    View(const View&) = delete;
    View& operator=(const View&) = delete;

    void layOut(QScreen& target, bool isComposited)
    {
        setScreen(&target);
        setColor(isComposited ? tokens().clear : tokens().sgBgPrimary);
        resize(narrowest, narrowest);
        stillgate::show(m_screen, *this);
        // A monitor may be switched off meanwhile.
        const auto fit = [this, screen = QPointer{&target}, isComposited] {
            fitContent(screen ? *screen : *QGuiApplication::primaryScreen(), isComposited);
        };
        connect(rootObject(), &QQuickItem::implicitHeightChanged, this, fit);
        connect(rootObject(), &QQuickItem::implicitWidthChanged, this, fit);
        fit();
    }

protected:
    /// Nobody but the owner closes it.
    bool event(QEvent* event) override
    {
        if (event->type() == QEvent::Close) {
            event->ignore();
            return true;
        }
        return QQuickView::event(event);
    }

private:
    void fitContent(const QScreen& target, bool isComposited)
    {
        const QSize wanted{
            static_cast<int>(rootObject()->implicitWidth()), static_cast<int>(rootObject()->implicitHeight())};
        QRect place{{}, wanted.boundedTo(target.availableSize())};
        place.moveCenter(target.availableGeometry().center());
        setGeometry(place);
        if (!isComposited)
            setMask(roundedRegion(place.size(), Tokens::radiusExtraLarge));
    }

    static constexpr int narrowest = 420;

    Screen m_screen;
};

BlockModalWindow::BlockModalWindow(
    QQmlEngine& engine, ScreenFactory makeScreen, std::optional<ScreenRectangle> place, WindowStacking& stacking)
    : m_engine(engine)
    , m_makeScreen(std::move(makeScreen))
    , m_place(place)
    , m_stacking(stacking)
{
    makeView();
}

BlockModalWindow::~BlockModalWindow()
{
    dropView();
}

bool BlockModalWindow::isVisible() const
{
    return m_view->isVisible();
}

void BlockModalWindow::bringToFront()
{
    m_view->show();
    m_view->raise();
    m_view->requestActivate();
    if (m_keptInFront)
        return;
    m_keptInFront = m_stacking.keepInFront(m_view->winId(), [this] {
        dropView();
        makeView();
        bringToFront();
    });
}

void BlockModalWindow::makeView()
{
    m_view = new View{m_engine, m_makeScreen()};
    m_view->layOut(*screenAt(m_place), m_stacking.isComposited());
}

void BlockModalWindow::dropView()
{
    m_view->hide();
    m_keptInFront.reset();
    m_view->deleteLater();
    m_view = nullptr;
}

} // namespace stillgate
