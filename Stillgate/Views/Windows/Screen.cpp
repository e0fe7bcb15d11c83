#include "Views/Windows/Screen.h"

#include <QVariant>

namespace stillgate
{

QUrl addressOfScreen(const char* module, const char* type)
{
    return QUrl{QString{"qrc:/qt/qml/Stillgate/Views/%1/%2.qml"}.arg(module, type)};
}

void show(const Screen& screen, QQuickView& view)
{
    view.setResizeMode(QQuickView::SizeRootObjectToView);
    view.setInitialProperties({{"viewModel", QVariant::fromValue(screen.viewModel.get())}});
    view.setSource(addressOfScreen(screen.module, screen.type));
    // A screen that doesn't load is a fault of the build; a window without content would hide it.
    if (view.status() != QQuickView::Ready)
        qFatal("the screen %s can't be loaded", screen.type);
}

} // namespace stillgate
