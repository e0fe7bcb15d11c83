#include "DesignSystem/gallery/LayoutCheck.h"

#include <QDir>
#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>

#include <cstdio>
#include <string_view>

namespace stillgate
{

namespace
{

constexpr auto sectionName = "section";

/// The value of an option that has to be known before there is an application.
const char* earlyOption(int argc, char* argv[], std::string_view name)
{
    for (int index = 1; index + 1 < argc; ++index)
        if (argv[index] == name)
            return argv[index + 1];
    return nullptr;
}

QStringList symbols()
{
    QStringList names = QDir{u":/stillgate/icons"_qs}.entryList({u"*.svg"_qs});
    for (QString& name : names)
        name.chop(4);
    return names;
}

/// Prints what is wrong.
bool isWellLaidOut(const QQuickWindow& window)
{
    const QStringList findings = layoutFindings(window);
    for (const QString& finding : findings)
        std::fprintf(stderr, "%s\n", qUtf8Printable(finding));
    return findings.isEmpty();
}

/// Draws the sections, a file each.
bool saveSections(QQuickWindow& window, const QDir& folder)
{
    QCoreApplication::processEvents();
    window.resize(window.width(), window.property("pageHeight").toInt());
    QCoreApplication::processEvents();
    const QImage page = window.grabWindow();
    const double scale = window.effectiveDevicePixelRatio();
    bool isSaved = folder.mkpath(u"."_qs);
    for (const auto* section : window.findChildren<QQuickItem*>(sectionName)) {
        const QRectF place = section->mapRectToScene(section->boundingRect());
        const QRect pixels = QRectF{place.topLeft() * scale, place.size() * scale}.toAlignedRect();
        const QString file = section->property("title").toString().toLower().replace(' ', '-') + u".png"_qs;
        isSaved &= page.copy(pixels).save(folder.filePath(file));
    }
    return isSaved && isWellLaidOut(window);
}

int run(int argc, char* argv[])
{
    const char* folder = earlyOption(argc, argv, "--screenshot");
    if (folder) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        if (const char* scale = earlyOption(argc, argv, "--scale"))
            qputenv("QT_SCALE_FACTOR", scale);
    }
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    const QGuiApplication application{argc, argv};
    QQmlApplicationEngine engine;
    engine.addImportPath(u"qrc:/qt/qml"_qs);
    engine.setInitialProperties({{u"symbols"_qs, symbols()}});
    engine.load(u"qrc:/qt/qml/Stillgate/Gallery/Gallery.qml"_qs);
    if (engine.rootObjects().isEmpty())
        return 1;
    if (!folder)
        return QGuiApplication::exec();
    return saveSections(*qobject_cast<QQuickWindow*>(engine.rootObjects().constFirst()), QDir{folder}) ? 0 : 1;
}

} // namespace

} // namespace stillgate

int main(int argc, char* argv[])
{
    return stillgate::run(argc, argv);
}
