#include "Views/Common/AppIconProvider.h"
#include "tests/support/TemporaryFolder.h"

#include <QImage>
#include <QQmlComponent>
#include <QQmlEngine>
#include <gtest/gtest.h>

#include <sys/stat.h>

namespace stillgate
{

using namespace test;

/// A machine whose only icons are in this folder of data.
class AppIcons : public testing::Test
{
protected:
    void SetUp() override
    {
        for (const auto* theme : {"hicolor", "Adwaita"})
            putFile(m_folder.path() / "icons" / theme / "index.theme",
                "[Icon Theme]\nName=A theme\nDirectories=24x24/apps,48x48/apps,scalable/apps\n"
                "[24x24/apps]\nSize=24\n[48x48/apps]\nSize=48\n"
                "[scalable/apps]\nSize=48\nMinSize=8\nMaxSize=512\nType=Scalable\n");
        putPicture("icons/hicolor/24x24/apps/org.example.Chess.png", 24, Qt::red);
        putPicture("icons/hicolor/48x48/apps/org.example.Chess.png", 48, Qt::green);
        putFile(m_folder.path() / "icons/hicolor/scalable/apps/org.example.Go.svg",
            R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 9 9"><rect width="9" height="9" fill="blue"/></svg>)");
        putPicture("icons/Adwaita/48x48/apps/accessories-text-editor.png", 48, Qt::yellow);
        putPicture("pixmaps/old.png", 32, Qt::cyan);
        putPicture("own/50% ö #1?.png", 256, Qt::magenta);
        m_provider = std::make_unique<AppIconProvider>(std::vector{m_folder.path()});
    }

    [[nodiscard]] QString path(const std::string& file) const { return QString::fromStdString(m_folder.path() / file); }

    void putPicture(const std::string& file, int edge, Qt::GlobalColor color) const
    {
        std::filesystem::create_directories((m_folder.path() / file).parent_path());
        QImage picture{edge, edge, QImage::Format_RGB32};
        picture.fill(color);
        EXPECT_TRUE(picture.save(path(file)));
    }

    /// As a screen shows it on a display of two pixels a point.
    QImage draw(const QString& icon, int points = 24)
    {
        QSize size;
        const auto id = QString::fromUtf8(QUrl::toPercentEncoding(icon));
        return m_provider->requestPixmap(id, &size, {2 * points, 2 * points}).toImage();
    }

    TemporaryFolder m_folder;
    std::unique_ptr<AppIconProvider> m_provider;
};

TEST_F(AppIcons, comeFromThemePixmapsOrPathInTheSizeAskedFor)
{
    const struct
    {
        QString icon;
        int points;
        int pixels;
        QColor color;
    } cases[] = {
        {"org.example.Chess", 12, 24, Qt::red},
        {"org.example.Chess", 24, 48, Qt::green},
        {"org.example.Go", 40, 80, Qt::blue},
        {"accessories-text-editor", 24, 48, Qt::yellow},
        {"old", 12, 24, Qt::cyan},
        {path("own/50% ö #1?.png"), 24, 48, Qt::magenta},
        {path("icons/hicolor/scalable/apps/org.example.Go.svg"), 24, 48, Qt::blue},
    };

    for (const auto& [icon, points, pixels, color] : cases) {
        const auto drawn = draw(icon, points);
        ASSERT_EQ(drawn.size(), QSize(pixels, pixels)) << icon.toStdString();
        EXPECT_EQ(drawn.pixelColor(pixels / 2, pixels / 2), color) << icon.toStdString();
    }
}

TEST_F(AppIcons, whatIsNoPictureOrAHostileOneIsNothing)
{
    putPicture("own/large.png", 2100, Qt::red);
    putPicture("icons/hicolor/48x48/apps/large.png", 2100, Qt::red);
    putFile(m_folder.path() / "own/long.svg", "<svg>" + std::string(5'000'000, ' ') + "</svg>");
    putFile(m_folder.path() / "own/text.png", "no picture");
    ASSERT_EQ(::mkfifo((m_folder.path() / "own/pipe.png").c_str(), 0600), 0);
    const QString cases[] = {"", "missing", "large", "../../pixmaps/old", path("own"), path("own/missing.png"),
        path("own/large.png"), path("own/long.svg"), path("own/text.png"), path("own/pipe.png")};
    for (const auto& icon : cases)
        EXPECT_TRUE(draw(icon).isNull()) << icon.toStdString();
}

TEST_F(AppIcons, areShownByAnImage)
{
    QQmlEngine engine;
    engine.addImageProvider(AppIconProvider::scheme, m_provider.release());
    QQmlComponent component{&engine};
    component.setData("import QtQuick; Image {"
                      "property string icon; sourceSize { width: 24; height: 24 }"
                      "source: 'image://app-icon/' + encodeURIComponent(icon) }",
        {});
    for (const auto& [icon, isShown] :
        {std::pair{path("own/50% ö #1?.png"), true}, {"org.example.Chess", true}, {"missing", false}}) {
        const std::unique_ptr<QObject> image{component.createWithInitialProperties({{"icon", icon}})};
        ASSERT_NE(image, nullptr) << component.errorString().toStdString();
        EXPECT_EQ(image->property("implicitWidth").toInt(), isShown ? 24 : 0) << icon.toStdString();
    }
}

} // namespace stillgate
