#pragma once

#include <QQuickImageProvider>

#include <filesystem>
#include <vector>

namespace stillgate
{

/// The icons of apps, for QML: "image://app-icon/" and `ApplicationDescription::icon` by encodeURIComponent. Nothing is
/// drawn for one that doesn't exist, isn't a picture, or is a hostile one.
///
/// On the GUI thread, always. An Image has to say its sourceSize: that one, in pixels of the screen, is asked for.
class AppIconProvider final : public QQuickImageProvider
{
public:
    static constexpr auto scheme = "app-icon";

    /// The folders of data that may have icons: their "icons" with themes, and their "pixmaps".
    explicit AppIconProvider(const std::vector<std::filesystem::path>& dataFolders);

    QPixmap requestPixmap(const QString& id, QSize* size, const QSize& requestedSize) override;
};

} // namespace stillgate
