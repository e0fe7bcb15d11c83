#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQuickWindow>

/// What a window of Qt Quick costs by itself: as large as our own first one, with as little in it as shows.
int main(int argc, char** argv)
{
    QQuickWindow::setSceneGraphBackend("software");
    const QGuiApplication application{argc, argv};
    QQmlApplicationEngine engine;
    engine.loadData(R"(
        import QtQuick
        Window {
            width: 520; height: 620; visible: true
            Rectangle { anchors.centerIn: parent; width: 100; height: 100; color: "teal" }
        })");
    return QGuiApplication::exec();
}
