#include "Platform/Linux/FileWatch.h"

namespace stillgate
{

FileWatch::FileWatch(const std::filesystem::path& file, std::function<void()> observer)
    : m_file(QString::fromStdString(file.string()))
    , m_observer(std::move(observer))
{
    m_watcher.addPath(QString::fromStdString(file.parent_path().string()));
    m_watcher.addPath(m_file);
    const auto follow = [this] { this->follow(); };
    QObject::connect(&m_watcher, &QFileSystemWatcher::fileChanged, &m_watcher, follow);
    QObject::connect(&m_watcher, &QFileSystemWatcher::directoryChanged, &m_watcher, follow);
}

/// The watch goes with the file that was replaced.
void FileWatch::follow()
{
    if (!m_watcher.files().contains(m_file))
        m_watcher.addPath(m_file);
    m_observer();
}

} // namespace stillgate
