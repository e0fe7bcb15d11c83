#include "System/FolderWatch.h"

#include <array>
#include <cerrno>
#include <sys/inotify.h>
#include <system_error>

namespace stillgate::dns
{

namespace
{

constexpr std::uint32_t changes = IN_CREATE | IN_CLOSE_WRITE | IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE | IN_ATTRIB |
    IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;

} // namespace

FolderWatch::FolderWatch()
    : m_events(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
{
    if (!m_events.isOpen())
        throw std::system_error{errno, std::generic_category(), "inotify"};
}

void FolderWatch::watch(const std::filesystem::path& folder)
{
    auto existing = folder;
    while (::inotify_add_watch(m_events.number(), existing.c_str(), changes) < 0 && existing.has_relative_path())
        existing = existing.parent_path();
}

void FolderWatch::drain()
{
    std::array<char, 16 * 1024> events{};
    while (::read(m_events.number(), events.data(), events.size()) > 0) {
    }
}

} // namespace stillgate::dns
