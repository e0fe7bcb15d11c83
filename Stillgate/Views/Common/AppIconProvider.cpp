#include "Views/Common/AppIconProvider.h"

#include <QDir>
#include <QFileInfo>
#include <QIcon>
#include <QImageReader>

namespace stillgate
{

namespace
{

constexpr QSize usualSize{24, 24};

/// THREAT: anybody may put an entry, and a picture, into the user's own folders. A small file can unpack to a picture
/// that fills the memory and takes seconds.
constexpr qint64 largestFile = 4 * 1024 * 1024;
constexpr int largestEdge = 2048;  // of a picture made of pixels
constexpr int largestPicture = 16; // MB, unpacked: that edge, squared

/// The themes that most apps take their icons from where they have none of their own, the usual one first.
constexpr const char* commonThemes[] = {"Adwaita", "breeze", "Papirus", "elementary", "Mint-Y", "mate", "gnome"};

QStringList withFolders(QStringList paths, const std::vector<std::filesystem::path>& dataFolders, const char* name)
{
    for (const auto& folder : dataFolders) {
        if (const auto path = QString::fromStdString(folder / name); !paths.contains(path))
            paths.append(path);
    }
    return paths;
}

bool isInstalled(const QString& theme)
{
    const auto folders = QIcon::themeSearchPaths();
    return std::ranges::any_of(
        folders, [&](const auto& folder) { return QFile::exists(folder + '/' + theme + "/index.theme"); });
}

QString commonTheme()
{
    const auto* theme = std::ranges::find_if(commonThemes, isInstalled);
    return theme != std::end(commonThemes) ? *theme : QIcon::fallbackThemeName();
}

bool isSmallEnough(const QImageReader& picture)
{
    const auto size = picture.size();
    const bool isDrawnInAnySize = picture.format().startsWith("svg");
    return isDrawnInAnySize || (size.width() <= largestEdge && size.height() <= largestEdge);
}

QPixmap pictureIn(const QString& path, const QSize& size)
{
    const QFileInfo file{path};
    if (!file.isFile() || file.size() > largestFile) // a pipe would never end
        return {};
    QImageReader reader{path};
    if (!isSmallEnough(reader))
        return {};
    reader.setScaledSize(reader.size().scaled(size, Qt::KeepAspectRatio));
    return QPixmap::fromImageReader(&reader);
}

QPixmap pixmapOf(const QString& icon, const QSize& size)
{
    if (QDir::isAbsolutePath(icon))
        return pictureIn(icon, size);
    if (icon.contains('/'))
        return {}; // the name of an icon is no way out of the theme
    return QIcon::fromTheme(icon).pixmap(size, 1);
}

} // namespace

AppIconProvider::AppIconProvider(const std::vector<std::filesystem::path>& dataFolders)
    : QQuickImageProvider(QQuickImageProvider::Pixmap)
{
    QIcon::setThemeSearchPaths(withFolders(QIcon::themeSearchPaths(), dataFolders, "icons"));
    QIcon::setFallbackSearchPaths(withFolders(QIcon::fallbackSearchPaths(), dataFolders, "pixmaps"));
    QIcon::setFallbackThemeName(commonTheme());
    if (QIcon::themeName().isEmpty()) // a desktop that names none
        QIcon::setThemeName("hicolor");
    QImageReader::setAllocationLimit(largestPicture); // for all pictures: QIcon reads those of a theme itself
}

QPixmap AppIconProvider::requestPixmap(const QString& id, QSize* size, const QSize& requestedSize)
{
    const auto icon = QString::fromUtf8(QByteArray::fromPercentEncoding(id.toUtf8()));
    const auto pixmap = pixmapOf(icon, requestedSize.isEmpty() ? usualSize : requestedSize);
    *size = pixmap.size();
    return pixmap;
}

} // namespace stillgate
