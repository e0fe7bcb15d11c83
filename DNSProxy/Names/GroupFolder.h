#pragma once

#include "Names/StoredSets.h"
#include "Platform/Linux/FileDescriptor.h"

namespace stillgate::dns
{

/// A user's file, open, and a regular one of a size that is read.
struct OpenConfig
{
    FileDescriptor file{-1};
    FileStamp stamp;
};

/// Where the users' files are: a folder each, by the number of the user, in a folder that only root may change.
///
/// THREAT: a user may put anything into their own folder, in the place of the file too, and change it while it is read.
/// They can't remove the folder.
class GroupFolder
{
public:
    explicit GroupFolder(std::filesystem::path path)
        : m_path(std::move(path))
    {}

    [[nodiscard]] const std::filesystem::path& path() const { return m_path; }

    [[nodiscard]] std::filesystem::path folderOf(const std::string& user) const { return m_path / user; }

    /// The users who have a folder, in their order. None where the folder of all isn't there; an error where it can't
    /// be read.
    [[nodiscard]] Result<std::vector<std::string>> users() const;

    /// Whether root has left `<user>.permanent` beside the folder: what the user has blocked once stays blocked.
    [[nodiscard]] bool isPermanent(const std::string& user) const;

    /// Never follows a link at the end of the path, and never waits.
    [[nodiscard]] Result<OpenConfig> open(const std::string& user) const;

private:
    std::filesystem::path m_path;
};

} // namespace stillgate::dns
