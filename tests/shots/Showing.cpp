#include "tests/shots/Showing.h"

#include <QCoreApplication>
#include <QImage>
#include <QQmlIncubationController>
#include <QQuickItem>

#include <algorithm>

namespace stillgate::test
{

namespace
{

/// Whether a picture of the item, or of one in it, is being read in the background.
bool isLoadingPictures(const QQuickItem& item)
{
    constexpr int loading = 2; // of QML's Image.Status
    if (item.inherits("QQuickImageBase") && item.property("status").toInt() == loading)
        return true;
    return std::ranges::any_of(item.childItems(), [](const QQuickItem* child) { return isLoadingPictures(*child); });
}

} // namespace

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
    } while (rows.incubatingObjectCount() > 0 || isLoadingPictures(*window.contentItem()));
}

} // namespace stillgate::test
