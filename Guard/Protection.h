#pragma once

#include "Guard/GroupFolders.h"
#include "Guard/PolkitAuthority.h"
#include "Guard/Records.h"
#include "Guard/SealedText.h"
#include "Guard/SystemUnits.h"
#include "Guard/Turns.h"
#include "Platform/Host.h"
#include "Platform/HostsFileWriter.h"

#include <functional>
#include <optional>

namespace stillgate::guard
{

/// What is in force for a user.
struct ProtectionStatus
{
    bool isDNSProxyEnabled = false;  ///< this user's part of it, and its units run
    std::filesystem::path container; ///< this user's folder; empty if there is none
    bool isHostsBlockApplied = false;
};

/// What users have applied, and what of the system follows from it: the block in the hosts file is the union of every
/// user's, and the DNS proxy runs while any user wants it.
///
/// A user's own call changes that user's part alone. Whose consent it needs is in Consent.h. One change is made at a
/// time; waiting for a consent holds up nobody else.
class Protection
{
public:
    struct System
    {
        Records& records;
        GroupFolders& folders;
        HostsFileWriter& hostsFile;
        SystemUnits& units;
        PolkitAuthority& authority;
        FileManager& files;
        Host& host;
    };

    explicit Protection(System system);

    /// Brings the hosts file to what the records say: an earlier process may have died between the two.
    [[nodiscard]] Task<> settle();

    /// `temporaryNames`: those of the block that go again. The permanence isn't theirs.
    [[nodiscard]] Task<Answer<>> replaceHostsBlock(
        Caller caller, SealedText block, std::vector<std::string> temporaryNames, Permanence permanence);
    [[nodiscard]] Task<Answer<>> removeHostsBlock(Caller caller);

    /// The user's folder.
    [[nodiscard]] Task<Answer<std::filesystem::path>> enableDNSProxy(Caller caller, Permanence permanence);
    [[nodiscard]] Task<Answer<>> disableDNSProxy(Caller caller);

    [[nodiscard]] Task<Answer<ProtectionStatus>> status(uid_t user);

private:
    /// The two parts of a user's protection; a consent that was given to a change of one is none for the other.
    enum class Part : std::uint8_t { hostsBlock, dnsProxy };

    struct Change
    {
        Caller caller;
        std::string verb;
        Part part;
        std::function<Answer<Consent>()> neededConsent; ///< as things stand
        std::function<Task<Answer<>>()> apply;
        std::optional<Consent> given = {};
    };

    [[nodiscard]] Task<Answer<>> make(Change change);

    [[nodiscard]] Answer<Consent> consentToNames(uid_t user, const UserNames& names, Force wanted) const;
    [[nodiscard]] Task<Answer<>> applyNames(uid_t user, const UserNames* names, Force wanted);
    [[nodiscard]] Task<Answer<bool>> growPermanentBlock(uid_t user, const UserNames* names);
    [[nodiscard]] Answer<std::string> unionBlock(std::optional<uid_t> user, BlockNames names) const;
    [[nodiscard]] Task<Answer<>> writeHostsFile(std::string block);

    [[nodiscard]] Task<Answer<>> changeProxy(Caller caller, std::string verb, Force wanted);
    [[nodiscard]] Answer<Consent> consentToProxy(uid_t user, Force wanted) const;
    [[nodiscard]] Task<Answer<>> applyProxy(uid_t user, Force wanted);
    [[nodiscard]] Task<Answer<>> startProxy(uid_t user, Force force);
    [[nodiscard]] Task<Answer<>> stopProxy(uid_t user);
    [[nodiscard]] Answer<bool> isProxyWanted() const;

    System m_system;
    Turns m_turns;
    std::map<std::pair<uid_t, Part>, std::uint64_t> m_revisions; ///< how often each part was changed
};

} // namespace stillgate::guard
