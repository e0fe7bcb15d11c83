#pragma once

#include "Models/Result.h"
#include "Names/BlockedConfigFile.h"

#include <filesystem>
#include <optional>
#include <string>

namespace stillgate::dns
{

/// Which file it was and in which state. Its owner can't set the time of change, which is the kernel's. Whoever writes
/// through a mapping may have it unchanged for some seconds, and gains nothing: what was read stays in force.
struct FileStamp
{
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::uint64_t size = 0;
    std::int64_t modified = 0; ///< nanoseconds since 1970, as the next one
    std::int64_t changed = 0;

    bool operator==(const FileStamp&) const = default;
};

/// A user's last good set, as it is kept.
struct StoredSet
{
    FileStamp source; ///< the file that it was read from; none if it can't be told from another
    std::vector<std::uint64_t> hashes;
};

/// The last good set of every user, in a folder that only this program may read, and the key of their hashes.
///
/// They are kept as hashes: loading them costs next to nothing, and the folder tells nobody which sites a user has
/// blocked. Without the key, or under another one, they are worthless and count as not there.
class StoredSets
{
public:
    /// Makes the folder and the key if they aren't there; where that fails, store() tries again. Under a key that is
    /// there and can't be read nothing is stored, and none of the sets is readable, but nothing is lost either: the
    /// names are hashed with a key that is forgotten at the end.
    explicit StoredSets(std::filesystem::path folder);

    [[nodiscard]] const NameKey& key() const { return m_key; }

    [[nodiscard]] bool isKeyDamaged() const { return m_keyFile == KeyFile::damaged; }

    /// The users who have a set, by their folders' names.
    [[nodiscard]] std::vector<std::string> users() const;

    /// Nothing if there is none, or it is damaged.
    [[nodiscard]] std::optional<StoredSet> load(const std::string& user) const;

    /// On the disk when this returns.
    [[nodiscard]] Result<void> store(const std::string& user, const StoredSet& set);

    void remove(const std::string& user) const;

private:
    enum class KeyFile : std::uint8_t { missing, kept, damaged };

    void loadKey();
    [[nodiscard]] Result<void> keepKey();

    [[nodiscard]] std::filesystem::path keyFile() const { return m_folder / "key"; }

    [[nodiscard]] std::filesystem::path fileOf(const std::string& user) const;

    std::filesystem::path m_folder;
    NameKey m_key = NameKey::random();
    KeyFile m_keyFile = KeyFile::missing;
};

} // namespace stillgate::dns
