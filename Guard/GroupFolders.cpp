#include "Guard/GroupFolders.h"

#include "Guard/Leftovers.h"
#include "Platform/Linux/FileDescriptor.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <grp.h>
#include <sys/stat.h>
#include <unistd.h>

namespace stillgate::guard
{

namespace fs = std::filesystem;

namespace
{

constexpr auto proxyGroup = "stillgate-dnsproxy";
constexpr mode_t folderMode = 02750;

std::unexpected<Refusal> systemRefusal(const char* action, const fs::path& path)
{
    return refusal(Error{SystemFailure{std::string{action} + " " + path.string(), errno}});
}

/// A folder of this mode, whatever the umask is.
bool makeFolder(const fs::path& path, mode_t mode)
{
    return (::mkdir(path.c_str(), 0700) == 0 || errno == EEXIST) && ::chmod(path.c_str(), mode) == 0;
}

bool isAsItShouldBe(const fs::path& folder, uid_t user, gid_t group)
{
    struct stat status{};
    return ::lstat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == user &&
        status.st_gid == group && (status.st_mode & 07777) == folderMode;
}

/// Given away last, with its mode set before that: from then on the folder isn't ours.
bool makeFor(uid_t user, gid_t group, const fs::path& folder)
{
    return makeFolder(folder, 0700) && ::chown(folder.c_str(), 0, group) == 0 &&
        ::chmod(folder.c_str(), folderMode) == 0 && ::chown(folder.c_str(), user, static_cast<gid_t>(-1)) == 0;
}

} // namespace

GroupFolders::GroupFolders(fs::path parent, ChildProcess& children)
    : m_parent(std::move(parent))
    , m_children(children)
{}

fs::path GroupFolders::path(uid_t user) const
{
    return m_parent / std::to_string(user);
}

bool GroupFolders::exists(uid_t user) const
{
    std::error_code ignored;
    return fs::is_directory(path(user), ignored);
}

Answer<> GroupFolders::make(uid_t user) const
{
    const auto folder = path(user);
    const auto* group = ::getgrnam(proxyGroup);
    if (group == nullptr)
        return refusal(Refusal::Kind::failed, std::string{"there is no group "} + proxyGroup);
    if (!makeFolder(m_parent.parent_path(), 0755) || !makeFolder(m_parent, 0755))
        return systemRefusal("make", m_parent);
    if (!isAsItShouldBe(folder, user, group->gr_gid) && !makeFor(user, group->gr_gid, folder))
        return systemRefusal("make", folder);
    return {};
}

Answer<> GroupFolders::setPermanent(uid_t user, bool isPermanent) const
{
    auto mark = path(user);
    mark += ".permanent";
    const FileDescriptor made{isPermanent ? ::open(mark.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644) : -1};
    const bool isDone = isPermanent ? made.isOpen() : ::unlink(mark.c_str()) == 0 || errno == ENOENT;
    return isDone ? Answer<>{} : systemRefusal("mark", mark);
}

Answer<> GroupFolders::remove(uid_t user) const
{
    if (!exists(user))
        return {};
    // THREAT: what the user has put into it may be deep and large, and may still grow.
    const auto folder = path(user);
    const auto state = m_parent.parent_path();
    auto aside = (state / "removed.XXXXXX").string();
    if (::mkdtemp(aside.data()) == nullptr || ::rename(folder.c_str(), aside.c_str()) != 0)
        return systemRefusal("put aside", folder);
    runDetached(removeLeftovers(&m_children, state));
    return {};
}

} // namespace stillgate::guard
