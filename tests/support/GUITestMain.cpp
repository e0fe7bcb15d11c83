#include <QGuiApplication>
#include <QQuickWindow>
#include <gmock/gmock.h>

int main(int argc, char** argv)
{
    QQuickWindow::setSceneGraphBackend("software"); // as the application does
    const QGuiApplication application{argc, argv};
    QGuiApplication::setQuitOnLastWindowClosed(false);
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
