#include <QQmlEngine>
#include <QtQuickTest/quicktest.h>

/// The modules are inside the program.
class Setup : public QObject
{
    Q_OBJECT

public Q_SLOTS:

    void qmlEngineAvailable(QQmlEngine* engine) { engine->addImportPath("qrc:/qt/qml"); }
};

QUICK_TEST_MAIN_WITH_SETUP(qml_tests, Setup)

#include "main.moc"
