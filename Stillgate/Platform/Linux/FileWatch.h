#pragma once

#include "Platform/Observers.h"

#include <QFileSystemWatcher>

#include <filesystem>
#include <functional>

namespace stillgate
{

/// Watches one file, also while there is none, and over replacements by rename.
class FileWatch final : public Observation
{
public:
    FileWatch(const std::filesystem::path& file, std::function<void()> observer);

private:
    void follow();

    QString m_file;
    std::function<void()> m_observer;
    QFileSystemWatcher m_watcher;
};

} // namespace stillgate
