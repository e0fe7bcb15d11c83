#include "Platform/Linux/LinuxFileManager.h"

#include "Platform/Linux/FileDescriptor.h"
#include "Platform/Linux/FileWatch.h"

#include <QStandardPaths>

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>

namespace stillgate
{

namespace fs = std::filesystem;

namespace
{

/// The failure of the call that has just set errno.
std::unexpected<Error> systemFailure(const char* action, const fs::path& path)
{
    return failure(SystemFailure{std::string{action} + " " + path.string(), errno});
}

Result<void> fromErrorCode(const char* action, const fs::path& path, std::error_code code)
{
    if (code)
        return failure(SystemFailure{std::string{action} + " " + path.string(), code.value()});
    return {};
}

bool writeAll(int descriptor, std::string_view bytes)
{
    while (!bytes.empty()) {
        const auto written = ::write(descriptor, bytes.data(), bytes.size());
        if (written < 0 && errno != EINTR)
            return false;
        bytes.remove_prefix(written < 0 ? 0 : static_cast<std::size_t>(written));
    }
    return true;
}

/// A temporary file beside its target; gone again unless it has taken the target's place.
class ReplacementFile
{
public:
    explicit ReplacementFile(const fs::path& target)
        : m_path(target.string() + ".XXXXXX")
        , m_file(::mkostemp(m_path.data(), O_CLOEXEC)) // mode 0600
    {}

    ~ReplacementFile()
    {
        if (m_file.isOpen() && !m_moved)
            ::unlink(m_path.c_str());
    }

    ReplacementFile(const ReplacementFile&) = delete;
    ReplacementFile& operator=(const ReplacementFile&) = delete;

    [[nodiscard]] bool isOpen() const { return m_file.isOpen(); }

    bool fill(std::string_view bytes, WriteOptions options)
    {
        const bool forGroup = options.access == WriteOptions::Access::ownerAndGroup;
        if (forGroup && ::fchmod(m_file.number(), 0640) != 0)
            return false;
        if (!writeAll(m_file.number(), bytes))
            return false;
        return options.durability == WriteOptions::Durability::relaxed || ::fsync(m_file.number()) == 0;
    }

    bool moveTo(const fs::path& target)
    {
        m_moved = ::rename(m_path.c_str(), target.c_str()) == 0;
        return m_moved;
    }

private:
    std::string m_path;
    FileDescriptor m_file;
    bool m_moved = false;
};

/// The name of a file is on the disk once its folder is. A file system that can't do it is not worth a failure.
void syncFolder(const fs::path& folder)
{
    const FileDescriptor opened{::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)};
    if (opened.isOpen())
        ::fsync(opened.number());
}

fs::path standardPath(QStandardPaths::StandardLocation location)
{
    return QStandardPaths::writableLocation(location).toStdString();
}

} // namespace

fs::path LinuxFileManager::applicationSupportDirectory() const
{
    return standardPath(QStandardPaths::GenericDataLocation);
}

std::optional<fs::path> LinuxFileManager::groupContainer() const
{
    auto shared = fs::path{"/var/lib/stillgate/group"} / std::to_string(::getuid());
    std::error_code ignored;
    if (fs::is_directory(shared, ignored))
        return shared;
    return applicationSupportDirectory() / "group.com.stillgate.macos";
}

Result<std::string> LinuxFileManager::read(const fs::path& path) const
{
    // Without O_NONBLOCK, a pipe in the place of a file would hold up the whole program.
    const FileDescriptor file{::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)};
    struct stat status{};
    if (!file.isOpen() || ::fstat(file.number(), &status) != 0)
        return systemFailure("open", path);
    if (!S_ISREG(status.st_mode))
        return failure(SystemFailure{"read " + path.string() + ": not a regular file"});

    std::string bytes(static_cast<std::size_t>(status.st_size), '\0');
    std::size_t length = 0;
    for (;;) {
        if (length == bytes.size())
            bytes.resize(bytes.size() + 4096); // room to find the end, also of a file that has grown
        const auto got = ::read(file.number(), bytes.data() + length, bytes.size() - length);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return systemFailure("read", path);
        if (got == 0)
            break;
        length += static_cast<std::size_t>(got);
    }
    bytes.resize(length);
    return bytes;
}

Result<void> LinuxFileManager::write(const fs::path& path, std::string_view bytes, WriteOptions options)
{
    ReplacementFile replacement{path};
    if (!replacement.isOpen() || !replacement.fill(bytes, options) || !replacement.moveTo(path))
        return systemFailure("write", path);
    if (options.durability == WriteOptions::Durability::synced)
        syncFolder(path.parent_path());
    return {};
}

Result<void> LinuxFileManager::move(const fs::path& from, const fs::path& to)
{
    std::error_code code;
    fs::rename(from, to, code);
    return fromErrorCode("move", from, code);
}

Result<void> LinuxFileManager::remove(const fs::path& path)
{
    if (::unlink(path.c_str()) != 0)
        return systemFailure("remove", path);
    return {};
}

std::unique_ptr<Observation> LinuxFileManager::onChange(const fs::path& path, std::function<void()> observer)
{
    return std::make_unique<FileWatch>(path, std::move(observer));
}

Result<void> LinuxFileManager::createDirectory(const fs::path& path)
{
    std::error_code code;
    fs::create_directories(path, code);
    return fromErrorCode("create", path, code);
}

} // namespace stillgate
