#pragma once

#include "Platform/Linux/FileDescriptor.h"

#include <filesystem>

namespace stillgate::dns
{

/// Tells that something has changed in some folders, whether they exist yet or not. What has changed it doesn't tell:
/// whoever is told looks at everything anew, so that no event can be missed or misread. By inotify(7).
class FolderWatch
{
public:
    /// Throws std::system_error where there is no inotify.
    FolderWatch();

    /// Readable once something has changed.
    [[nodiscard]] int descriptor() const { return m_events.number(); }

    /// Watches the folder from now on; as long as it doesn't exist, the nearest one above it that does. To be called
    /// again after every change: the folder may be another one by then.
    void watch(const std::filesystem::path& folder);

    /// Forgets what has happened up to now.
    void drain();

private:
    FileDescriptor m_events;
};

} // namespace stillgate::dns
