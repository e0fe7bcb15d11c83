#pragma once

#include "Names/DomainSet.h"
#include "Names/GroupFolder.h"
#include "Names/StoredSets.h"
#include "Platform/Log.h"

#include <map>

namespace stillgate::dns
{

/// The sets of all users, each the last good one, and their union. What is wrong with a user's file changes nothing; a
/// user whose folder is gone has no set any more. The set of a user whose blocks are permanent only grows.
///
/// Memory holds none of the sets: they are where they are stored, but for those that couldn't be stored.
class UserSets
{
public:
    /// All users' together: with the union in force and the next one, some 300 MB. A user for whom there is no room
    /// keeps the last good set.
    static constexpr std::size_t mostNames = 4 * BlockedConfigParser::mostNames;

    UserSets(std::filesystem::path group, std::filesystem::path state, Log& log);

    /// Looks at every file that may have changed. True if the union may be another one than before.
    [[nodiscard]] bool refresh();

    /// The union, as it is since the last refresh(). Null if a set that is in force can't be read any more: a union
    /// without it would open what that user has blocked.
    [[nodiscard]] std::unique_ptr<DomainSet> makeUnion();

    /// Stores what refresh() has found to be new.
    void store();

    /// Whether store() has failed with one of them.
    [[nodiscard]] bool hasUnstored() const;

    /// What is wrong with the users' files, one line each; nothing if all are well.
    [[nodiscard]] std::vector<std::string> faults() const;

    /// The folders in which a change may be one of the sets.
    [[nodiscard]] std::vector<std::filesystem::path> folders() const;

private:
    struct User
    {
        std::optional<FileStamp> examined; ///< the state of the file that needs no second look
        std::optional<StoredSet> unstored;
        std::optional<std::uint64_t> digest; ///< of the last good set; nothing if there is none
        std::size_t count = 0;               ///< of its names
        std::string fault;
        bool canStore = true;
        bool isLost = false; ///< the last good set can't be read from where it is stored
        bool isPermanent = false;
    };

    bool removeGone(const std::vector<std::string>& present);
    void addStored();
    bool insertInto(DomainSet& names, const std::string& name, const User& user) const;
    bool recover(const std::string& name, User& user);
    bool refresh(const std::string& name, User& user);
    [[nodiscard]] bool keepNames(const std::string& name, const User& user, HashedNames& names) const;
    bool take(const std::string& name, User& user, HashedNames names, const std::optional<FileStamp>& stamp);
    [[nodiscard]] std::size_t count() const;
    void setLost(const std::string& name, User& user);
    void setFault(const std::string& name, User& user, std::string fault);

    GroupFolder m_group;
    StoredSets m_stored;
    Log& m_log;
    std::map<std::string, User> m_users;
    std::string m_groupFault;
    bool m_hasUnion = false;
};

} // namespace stillgate::dns
