#include <QApplication>
#include <QMenu>
#include <QPixmap>
#include <QSystemTrayIcon>

/// What a status item of Qt costs by itself.
int main(int argc, char** argv)
{
    QApplication application{argc, argv};
    QPixmap picture{22, 22};
    picture.fill(Qt::black);
    QSystemTrayIcon icon{QIcon{picture}};
    QMenu menu;
    menu.addAction("Quit", &QApplication::quit);
    icon.setContextMenu(&menu);
    icon.show();
    return QApplication::exec();
}
