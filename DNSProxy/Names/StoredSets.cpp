#include "Names/StoredSets.h"

#include "Platform/Linux/FileDescriptor.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

namespace stillgate::dns
{

namespace fs = std::filesystem;

namespace
{

constexpr std::string_view ending = ".set";
constexpr std::uint64_t formatOne = 0x3145544147444753; // "SGDGATE1"

/// Numbers in the machine's own order: the file never leaves it.
struct FileHeader
{
    std::uint64_t format = formatOne;
    FileStamp source;
    std::uint64_t count = 0;
    std::uint64_t digest = 0; ///< of the hashes, under the key
};

static_assert(std::has_unique_object_representations_v<FileHeader>); // it is written as it lies in memory

View bytesOf(const std::vector<std::uint64_t>& hashes)
{
    return {reinterpret_cast<const std::uint8_t*>(hashes.data()), hashes.size() * sizeof(hashes.front())};
}

View bytesOf(const FileHeader& header)
{
    return {reinterpret_cast<const std::uint8_t*>(&header), sizeof(header)};
}

bool readAll(int descriptor, void* target, std::size_t size)
{
    auto* next = static_cast<char*>(target);
    while (size > 0) {
        const auto got = ::read(descriptor, next, size);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            return false;
        next += got;
        size -= static_cast<std::size_t>(got);
    }
    return true;
}

bool writeAll(int descriptor, View bytes)
{
    while (!bytes.empty()) {
        const auto written = ::write(descriptor, bytes.data(), bytes.size());
        if (written < 0 && errno != EINTR)
            return false;
        bytes = bytes.subspan(written < 0 ? 0 : static_cast<std::size_t>(written));
    }
    return true;
}

void syncFolder(const fs::path& folder)
{
    const FileDescriptor opened{::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)};
    if (opened.isOpen())
        ::fsync(opened.number());
}

/// Puts a file there whole, or leaves what is there.
Result<void> replaceFile(const fs::path& target, View header, View body)
{
    const auto temporary = target.string() + ".new"; // one process writes here, and one thread of it
    const FileDescriptor file{::open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, 0600)};
    const bool isThere = file.isOpen() && writeAll(file.number(), header) && writeAll(file.number(), body) &&
        ::fsync(file.number()) == 0 && ::rename(temporary.c_str(), target.c_str()) == 0;
    if (!isThere) {
        const auto code = errno;
        ::unlink(temporary.c_str());
        return failure(SystemFailure{"write " + target.string(), code});
    }
    syncFolder(target.parent_path());
    return {};
}

/// How many hashes the file has by its size; nothing if it is no such file.
std::optional<std::uint64_t> countIn(int descriptor)
{
    struct stat status{};
    if (::fstat(descriptor, &status) != 0 || static_cast<std::size_t>(status.st_size) < sizeof(FileHeader))
        return std::nullopt;
    return (static_cast<std::size_t>(status.st_size) - sizeof(FileHeader)) / sizeof(std::uint64_t);
}

} // namespace

StoredSets::StoredSets(fs::path folder)
    : m_folder(std::move(folder))
{
    loadKey();
}

std::vector<std::string> StoredSets::users() const
{
    std::vector<std::string> users;
    std::error_code ignored;
    for (fs::directory_iterator entry{m_folder, ignored}, end; entry != end; entry.increment(ignored)) {
        if (entry->path().extension() == ending)
            users.push_back(entry->path().stem());
    }
    return users;
}

std::optional<StoredSet> StoredSets::load(const std::string& user) const
{
    const FileDescriptor file{::open(fileOf(user).c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK)};
    FileHeader header;
    const auto count = file.isOpen() ? countIn(file.number()) : std::nullopt;
    if (!count || !readAll(file.number(), &header, sizeof(header)) || header.format != formatOne ||
        header.count != *count)
        return std::nullopt;
    StoredSet set{.source = header.source, .hashes = std::vector<std::uint64_t>(*count)};
    if (!readAll(file.number(), set.hashes.data(), bytesOf(set.hashes).size()) ||
        m_key.hash(bytesOf(set.hashes)) != header.digest)
        return std::nullopt;
    return set;
}

Result<void> StoredSets::store(const std::string& user, const StoredSet& set)
{
    if (const auto kept = keepKey(); !kept)
        return kept;
    const FileHeader header{
        .source = set.source, .count = set.hashes.size(), .digest = m_key.hash(bytesOf(set.hashes))};
    return replaceFile(fileOf(user), bytesOf(header), bytesOf(set.hashes));
}

void StoredSets::remove(const std::string& user) const
{
    ::unlink(fileOf(user).c_str());
    syncFolder(m_folder);
}

void StoredSets::loadKey()
{
    const FileDescriptor file{::open(keyFile().c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK)};
    if (!file.isOpen() && errno == ENOENT) {
        static_cast<void>(keepKey()); // a failure shows with the first set that can't be stored
        return;
    }
    NameKey::Value value{};
    const bool isWhole = file.isOpen() && readAll(file.number(), value.data(), value.size());
    m_keyFile = isWhole ? KeyFile::kept : KeyFile::damaged;
    if (isWhole)
        m_key = NameKey{value};
}

/// Never in the place of another one: that would make all sets worthless.
Result<void> StoredSets::keepKey()
{
    if (m_keyFile == KeyFile::kept)
        return {};
    if (m_keyFile == KeyFile::damaged)
        return failure(SystemFailure{"use " + keyFile().string(), EBADMSG});
    std::error_code ignored;
    fs::create_directories(m_folder, ignored);
    const auto kept = replaceFile(keyFile(), m_key.value(), {});
    if (kept)
        m_keyFile = KeyFile::kept;
    return kept;
}

fs::path StoredSets::fileOf(const std::string& user) const
{
    return m_folder / (user + std::string{ending});
}

} // namespace stillgate::dns
