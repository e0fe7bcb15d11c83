#include "tests/shots/Showing.h"

#include <QCoreApplication>
#include <QImage>
#include <QQmlIncubationController>

namespace stillgate::test
{

Showing::Showing(const Scene& scene, WindowSize size)
{
    scene.arrange(m_stage);
    if (size == WindowSize::Smallest)
        window().resize(window().minimumSize());
    settle(window());
}

void settle(QQuickWindow& window)
{
    auto& rows = *window.incubationController(); // those of a list beyond the page, one by one
    do {
        rows.incubateFor(100);
        QCoreApplication::processEvents();
        window.grabWindow(); // layouts come to rest with a frame
        QCoreApplication::processEvents();
    } while (rows.incubatingObjectCount() > 0);
}

} // namespace stillgate::test
