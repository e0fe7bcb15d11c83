#include "tests/shots/Showing.h"

#include <QCoreApplication>
#include <QImage>

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
    QCoreApplication::processEvents();
    window.grabWindow(); // layouts come to rest with a frame
    QCoreApplication::processEvents();
}

} // namespace stillgate::test
