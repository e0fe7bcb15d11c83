#pragma once

#include "Guard/Refusal.h"
#include "Platform/ChildProcess.h"

#include <filesystem>
#include <sys/types.h>

namespace stillgate::guard
{

/// The folders in which users leave what the DNS proxy is to read: `<parent>/<uid>`, of the user's and the proxy's
/// group, mode 2750, so that a file made in it is the group's to read.
///
/// The parent is root's: a user can't take the own folder away, and with it the own part of what is blocked.
class GroupFolders
{
public:
    GroupFolders(std::filesystem::path parent, ChildProcess& children);

    [[nodiscard]] std::filesystem::path path(uid_t user) const;
    [[nodiscard]] bool exists(uid_t user) const;

    /// One that is there is a success.
    [[nodiscard]] Answer<> make(uid_t user) const;

    /// Whether the names that the user has left there once stay blocked: the proxy takes none of them away while root's
    /// file `<parent>/<uid>.permanent` is there.
    [[nodiscard]] Answer<> setPermanent(uid_t user, bool isPermanent) const;

    /// With all that the user has put into it, however much: it is out of the way at once, and goes from the disk
    /// later. One that isn't there is a success.
    [[nodiscard]] Answer<> remove(uid_t user) const;

private:
    std::filesystem::path m_parent;
    ChildProcess& m_children;
};

} // namespace stillgate::guard
