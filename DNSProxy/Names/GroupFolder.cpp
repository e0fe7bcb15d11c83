#include "Names/GroupFolder.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

namespace stillgate::dns
{

namespace fs = std::filesystem;

namespace
{

constexpr auto fileName = "blocked-config.json";

bool isUser(const std::string& name)
{
    return !name.empty() &&
        std::ranges::all_of(name, [](char character) { return character >= '0' && character <= '9'; });
}

std::int64_t nanoseconds(const timespec& time)
{
    return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

std::unexpected<Error> refused(const char* why, int code = 0)
{
    return failure(SystemFailure{std::string{fileName} + why, code});
}

} // namespace

Result<std::vector<std::string>> GroupFolder::users() const
{
    std::vector<std::string> users;
    std::error_code code;
    for (fs::directory_iterator entry{m_path, code}, end; !code && entry != end; entry.increment(code)) {
        const auto name = entry->path().filename().string();
        std::error_code ignored;
        const auto kind = entry->symlink_status(ignored).type();
        // One that can't be looked at (none) isn't gone.
        if (isUser(name) && (kind == fs::file_type::directory || kind == fs::file_type::none))
            users.push_back(name);
    }
    if (code && code != std::errc::no_such_file_or_directory)
        return failure(SystemFailure{"read " + m_path.string(), code.value()});
    std::ranges::sort(users);
    return users;
}

bool GroupFolder::isPermanent(const std::string& user) const
{
    std::error_code code;
    const auto kind = fs::symlink_status(m_path / (user + ".permanent"), code).type();
    return kind != fs::file_type::not_found; // one that can't be looked at isn't gone
}

Result<OpenConfig> GroupFolder::open(const std::string& user) const
{
    const auto path = folderOf(user) / fileName;
    OpenConfig config{.file{::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC)}, .stamp = {}};
    struct stat status{};
    if (!config.file.isOpen() || ::fstat(config.file.number(), &status) != 0)
        return refused("", errno);
    if (!S_ISREG(status.st_mode))
        return refused(" is no regular file");
    if (static_cast<std::uint64_t>(status.st_size) > largestConfig)
        return refused(" is larger than 256 MB");
    config.stamp = {.device = status.st_dev,
        .inode = status.st_ino,
        .size = static_cast<std::uint64_t>(status.st_size),
        .modified = nanoseconds(status.st_mtim),
        .changed = nanoseconds(status.st_ctim)};
    return config;
}

} // namespace stillgate::dns
