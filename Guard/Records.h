#pragma once

#include "Guard/BlockNames.h"
#include "Guard/Consent.h"
#include "Platform/FileManager.h"
#include "Platform/Log.h"

#include <memory>
#include <sys/types.h>

namespace stillgate::guard
{

/// A user's block, as it was stored.
struct StoredBlock
{
    std::unique_ptr<const std::string> text; ///< what the names are views of
    Force force = Force::none;               ///< of the lasting names; flexible where there are none
    UserNames names;
};

/// What each user has applied, in a folder of root's: `<uid>/hosts-block` and `<uid>/dns-proxy`. Each is written whole
/// and on the disk before a call returns. It outlives reboots, and what is in force is made from it.
class Records
{
public:
    Records(std::filesystem::path folder, std::string hostName, FileManager& files, Log& log);

    /// Force::none where there is no record. The place of a damaged one is taken by what the hosts file's block holds:
    /// damage takes no name away, and stops nobody else.
    [[nodiscard]] Answer<StoredBlock> hostsBlock(uid_t user);

    /// With no names, the record goes.
    [[nodiscard]] Answer<> putHostsBlock(uid_t user, Force force, const UserNames& names);

    [[nodiscard]] Answer<Force> dnsProxy(uid_t user) const;

    /// With Force::none, the record goes.
    [[nodiscard]] Answer<> putDNSProxy(uid_t user, Force force);

    /// Every user with a record, ascending.
    [[nodiscard]] Answer<std::vector<uid_t>> users() const;

private:
    struct Record
    {
        Force force = Force::none;
        std::string content;
    };

    [[nodiscard]] std::filesystem::path path(uid_t user, const char* name) const;
    [[nodiscard]] Answer<Record> read(const std::filesystem::path& path) const;
    [[nodiscard]] Answer<> replaceDamaged(uid_t user, const StoredBlock& damaged);
    [[nodiscard]] Answer<> write(const std::filesystem::path& path, Force force, std::string_view content);

    std::filesystem::path m_folder;
    std::string m_hostName;
    FileManager& m_files;
    Log& m_log;
};

} // namespace stillgate::guard
