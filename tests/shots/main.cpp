// stillgate-shots FOLDER [SCREEN]     draws every screen, or that one, in every state:
//                                     FOLDER/<language>/<screen>-<state>[-small][@2x].png
// stillgate-shots --check [SCREEN]    looks for what is wrong with them; fails if anything is
//
// At the scale QT_SCALE_FACTOR, which has to be set before there is an application; without one, at 1 and at 2.

#include "DesignSystem/gallery/LayoutCheck.h"
#include "tests/shots/KeyboardCheck.h"
#include "tests/shots/LanguageInUse.h"
#include "tests/shots/Showing.h"

#include <QDir>
#include <QFontInfo>
#include <QGuiApplication>
#include <QProcess>

#include <algorithm>
#include <cstdio>
#include <map>
#include <utility>

namespace stillgate::test
{

namespace
{

constexpr auto fontFamily = "Noto Sans"; // so that pictures are the same on every machine

QString nameOf(const Scene& scene, WindowSize size)
{
    const auto text = [](std::string_view part) { return QString::fromUtf8(part.data(), qsizetype(part.size())); };
    return text(scene.screen) + '-' + text(scene.state) + (size == WindowSize::Smallest ? "-small" : "");
}

/// What Qt has complained about since the last call, such as a binding that goes in circles.
QStringList takeWarnings()
{
    // What a screen that isn't there can't do, and a picture that a scene leaves out.
    static constexpr const char* ofNoMatter[] = {
        "does not support raise()", "does not support setting window masks", "Cannot open: file:///nowhere"};
    static QStringList warnings;
    static const auto previous =
        qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& text) {
            if (type == QtFatalMsg)
                std::fprintf(stderr, "%s\n", qUtf8Printable(text));
            else if (std::ranges::none_of(ofNoMatter, [&](const char* part) { return text.contains(part); }))
                warnings << text;
        });
    Q_UNUSED(previous)
    return std::exchange(warnings, {});
}

/// Those of the screen that the command line names, or all.
std::vector<Scene> chosenScenes()
{
    auto scenes = allScenes();
    if (const auto arguments = QCoreApplication::arguments(); arguments.size() > 2) {
        const auto screen = arguments[2].toStdString();
        std::erase_if(scenes, [&](const Scene& scene) { return scene.screen != screen; });
    }
    return scenes;
}

/// Calls `look` with every scene in every size that its window can have.
template <class Look>
void lookAtAll(Look look)
{
    for (const auto& scene : chosenScenes()) {
        bool isResizable = false;
        {
            const Showing showing{scene, WindowSize::Opening};
            isResizable = showing.isResizable();
            look(scene, WindowSize::Opening, showing.window());
        }
        if (isResizable)
            look(scene, WindowSize::Smallest, Showing{scene, WindowSize::Smallest}.window());
    }
}

bool draw(const QDir& folder)
{
    bool isSaved = folder.mkpath(".");
    lookAtAll([&](const Scene& scene, WindowSize size, QQuickWindow& window) {
        const auto suffix = window.effectiveDevicePixelRatio() > 1 ? "@2x.png" : ".png";
        isSaved &= window.grabWindow().save(folder.filePath(nameOf(scene, size) + suffix));
    });
    return isSaved;
}

QStringList findingsIn(const QString& language)
{
    takeWarnings();
    QStringList all;
    const auto note = [&](const QString& name, const QStringList& findings) {
        for (const auto& finding : findings)
            all << QString{"%1, %2: %3"}.arg(name, language, finding);
    };
    lookAtAll([&](const Scene& scene, WindowSize size, QQuickWindow& window) {
        note(nameOf(scene, size), layoutFindings(window) + keyboardFindings(window) + takeWarnings());
    });
    return all;
}

/// What a button does depends neither on the language nor on the scale.
QStringList activationFindings()
{
    const LanguageInUse english{"en"};
    takeWarnings();
    QStringList all;
    std::map<std::string_view, std::set<QString>> pressedTypes; // by screen
    for (const auto& scene : chosenScenes())
        for (const auto& finding : activationFindings(scene, pressedTypes[scene.screen]) + takeWarnings())
            all << nameOf(scene, WindowSize::Opening) + ": " + finding;
    return all;
}

bool print(const QStringList& findings)
{
    for (const auto& finding : findings)
        std::fprintf(stderr, "%s\n", qUtf8Printable(finding));
    return findings.isEmpty();
}

bool showOrCheck(const QString& argument)
{
    bool isWell = true;
    for (const auto* language : {"en", "tr"}) {
        const LanguageInUse inUse{language};
        if (argument != "--check") {
            isWell &= draw(QDir{argument}.filePath(language));
            continue;
        }
        isWell &= print(findingsIn(language));
    }
    if (argument == "--check" && qgetenv("QT_SCALE_FACTOR") == "1")
        isWell &= print(activationFindings());
    return isWell;
}

int runAtOneScale(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" STILLGATE_SCREEN);
    QQuickWindow::setSceneGraphBackend("software");
    const QGuiApplication application{argc, argv};
    QGuiApplication::setFont(QFont{fontFamily});
    QGuiApplication::setQuitOnLastWindowClosed(false);
    if (QFontInfo{QGuiApplication::font()}.family() != fontFamily)
        qFatal("the font %s is missing (Debian's package fonts-noto-core)", fontFamily);
    return showOrCheck(argv[1]) ? EXIT_SUCCESS : EXIT_FAILURE;
}

int runAtEachScale(const QString& program, const QStringList& arguments)
{
    int status = EXIT_SUCCESS;
    for (const auto* scale : {"1", "2"}) {
        qputenv("QT_SCALE_FACTOR", scale);
        status |= QProcess::execute(program, arguments);
    }
    return status;
}

} // namespace

} // namespace stillgate::test

int main(int argc, char** argv)
{
    if (argc < 2 || argc > 3) {
        std::fprintf(stderr, "Usage: stillgate-shots FOLDER | --check [SCREEN]\n");
        return EXIT_FAILURE;
    }
    if (qEnvironmentVariableIsSet("QT_SCALE_FACTOR"))
        return stillgate::test::runAtOneScale(argc, argv);
    QStringList arguments;
    for (int index = 1; index < argc; ++index)
        arguments << argv[index];
    return stillgate::test::runAtEachScale(argv[0], arguments);
}
