#include "Guard/Protection.h"

#include "Guard/UnitNames.h"
#include "Platform/HostsBlock.h"

namespace stillgate::guard
{

namespace
{

// THREAT: what users have applied is read and merged for each change. Together it has to fit into the memory that the
// unit is given, several times, and no user may take all the room there is.
constexpr std::size_t mostNamesOfABlock = 1'500'000;
constexpr std::size_t mostNamesOfAUser = 2'000'000; ///< a permanent block grows
constexpr std::size_t mostNames = 4'000'000;
constexpr std::size_t largestUnion = 128UL << 20; ///< bytes

bool isTooMuch(const BlockNames& names, const std::string& text)
{
    return names.size() > mostNames || text.size() > largestUnion;
}

std::unexpected<Refusal> tooManyNames()
{
    return refusal(Refusal::Kind::invalidArgument, "these are more names than fit");
}

/// What stands after a change: permanent names only grow.
UserNames afterChange(const StoredBlock& standing, const UserNames& names, Force wanted)
{
    const bool mayOnlyGrow = standing.force == Force::permanent && wanted == Force::permanent;
    return mayOnlyGrow ? UserNames{unionOf(standing.names.lasting, names.lasting), names.temporary} : names;
}

std::unexpected<Refusal> denied()
{
    return refusal(Refusal::Kind::accessDenied, "the right to do this was not given");
}

} // namespace

Protection::Protection(System system)
    : m_system(system)
{}

Task<> Protection::settle()
{
    co_await m_turns.next();
    const TurnEnd end{m_turns};
    const auto users = m_system.records.users();
    // With no record, a block in the file is nobody's, and only a call may take it away.
    if (!users || users->empty())
        co_return;
    if (auto block = unionBlock({}, {}))
        (void)co_await writeHostsFile(std::move(*block));
}

Task<Answer<>> Protection::replaceHostsBlock(
    Caller caller, SealedText block, std::vector<std::string> temporaryNames, Permanence permanence)
{
    // THREAT: not a byte is read for a caller who may block nothing; until then it costs no memory of ours.
    const auto revision = m_revisions[{caller.user, Part::hostsBlock}];
    if (!co_await m_system.authority.grants(caller, "ReplaceHostsBlock", Consent::block, revision))
        co_return denied();
    auto read = readBlock(block.bytes());
    if (!read)
        co_return std::unexpected{read.error()};
    if (read->size() > mostNamesOfABlock)
        co_return tooManyNames();
    const auto names =
        divided(withoutNamesOfMachine(std::move(*read), m_system.host.name()), std::move(temporaryNames));
    const auto wanted = forceOf(permanence);
    // What is added to a permanent block is in force before anybody is asked what may go.
    const auto hasGrown =
        wanted == Force::permanent ? Answer<bool>{false} : co_await growPermanentBlock(caller.user, &names);
    if (!hasGrown)
        co_return std::unexpected{hasGrown.error()};
    const auto answer = co_await make(
        {caller, "ReplaceHostsBlock", Part::hostsBlock, [&] { return consentToNames(caller.user, names, wanted); },
            [&] { return applyNames(caller.user, &names, wanted); }, Consent::block});
    if (!answer && answer.error().kind == Refusal::Kind::accessDenied && *hasGrown)
        co_return Answer<>{};
    co_return answer;
}

Task<Answer<>> Protection::removeHostsBlock(Caller caller)
{
    const UserNames none;
    co_return co_await make(
        {caller, "RemoveHostsBlock", Part::hostsBlock, [&] { return consentToNames(caller.user, none, Force::none); },
            [&] { return applyNames(caller.user, &none, Force::none); }});
}

Task<Answer<std::filesystem::path>> Protection::enableDNSProxy(Caller caller, Permanence permanence)
{
    const auto wanted = forceOf(permanence);
    const auto standing = m_system.records.dnsProxy(caller.user);
    if (!standing)
        co_return std::unexpected{standing.error()};
    // It runs before anybody is asked whether it may be ended without asking.
    if (*standing == Force::permanent && wanted != Force::permanent) {
        if (const auto kept = co_await changeProxy(caller, "EnableDNSProxy", Force::permanent); !kept)
            co_return std::unexpected{kept.error()};
    }
    if (const auto enabled = co_await changeProxy(caller, "EnableDNSProxy", wanted); !enabled)
        co_return std::unexpected{enabled.error()};
    co_return m_system.folders.path(caller.user);
}

Task<Answer<>> Protection::disableDNSProxy(Caller caller)
{
    return changeProxy(caller, "DisableDNSProxy", Force::none);
}

Task<Answer<>> Protection::changeProxy(Caller caller, std::string verb, Force wanted)
{
    co_return co_await make({caller, verb, Part::dnsProxy, [&] { return consentToProxy(caller.user, wanted); },
        [&] { return applyProxy(caller.user, wanted); }});
}

Task<Answer<ProtectionStatus>> Protection::status(uid_t user)
{
    co_await m_turns.next();
    const TurnEnd end{m_turns};
    ProtectionStatus status;
    const auto proxy = m_system.records.dnsProxy(user);
    const auto block = m_system.records.hostsBlock(user);
    if (!proxy || !block)
        co_return refusal(Refusal::Kind::failed, "the records can't be read");
    if (m_system.folders.exists(user))
        status.container = m_system.folders.path(user);
    if (block->force != Force::none) {
        const auto wholeBlock = unionBlock(user, block->names.all());
        const auto hosts = m_system.files.read(hostsPath);
        status.isHostsBlockApplied = wholeBlock && hosts && hosts->contains(*wholeBlock);
    }
    status.isDNSProxyEnabled = *proxy != Force::none && co_await m_system.units.isActive(proxySocketUnit) &&
        co_await m_system.units.isActive(redirectUnit);
    co_return status;
}

Task<Answer<>> Protection::make(Change change)
{
    struct Granted
    {
        Consent consent;
        std::uint64_t revision = 0;

        /// The consent of an administrator is to what stood when it was asked for, and to nothing added since.
        [[nodiscard]] bool covers(const Granted& needed) const
        {
            return consent == needed.consent && (consent != Consent::unblockPermanent || revision == needed.revision);
        }
    };

    auto& revision = m_revisions[{change.caller.user, change.part}];
    auto granted = change.given.transform([](Consent consent) { return Granted{consent}; });
    while (true) {
        std::optional<Granted> needed;
        {
            co_await m_turns.next();
            const TurnEnd end{m_turns};
            const auto consent = change.neededConsent();
            if (!consent)
                co_return std::unexpected{consent.error()};
            needed = Granted{*consent, revision};
            if (granted && granted->covers(*needed)) {
                ++revision;
                co_return co_await change.apply();
            }
        }
        if (!co_await m_system.authority.grants(change.caller, change.verb, needed->consent, needed->revision))
            co_return denied();
        granted = needed;
    }
}

Answer<Consent> Protection::consentToNames(uid_t user, const UserNames& names, Force wanted) const
{
    const auto standing = m_system.records.hostsBlock(user);
    if (!standing)
        return std::unexpected{standing.error()};
    const bool dropsNames = !isSubset(standing->names.all(), afterChange(*standing, names, wanted).all());
    return neededConsent(standing->force, wanted, dropsNames);
}

/// Whether the user's block is permanent and has got names that weren't in it. For a caller who may block.
Task<Answer<bool>> Protection::growPermanentBlock(uid_t user, const UserNames* names)
{
    co_await m_turns.next();
    const TurnEnd end{m_turns};
    const auto standing = m_system.records.hostsBlock(user);
    if (!standing)
        co_return std::unexpected{standing.error()};
    if (standing->force != Force::permanent || isSubset(names->all(), standing->names.all()))
        co_return false;
    ++m_revisions[{user, Part::hostsBlock}];
    const UserNames both{names->lasting, unionOf(standing->names.temporary, names->temporary)};
    const auto grown = co_await applyNames(user, &both, Force::permanent);
    if (!grown)
        co_return std::unexpected{grown.error()};
    co_return true;
}

Task<Answer<>> Protection::applyNames(uid_t user, const UserNames* names, Force wanted)
{
    const auto standing = m_system.records.hostsBlock(user);
    if (!standing)
        co_return std::unexpected{standing.error()};
    const auto own = afterChange(*standing, *names, wanted);
    auto ownNames = own.all();
    if (ownNames.size() > mostNamesOfAUser)
        co_return tooManyNames();
    auto block = unionBlock(user, std::move(ownNames));
    if (!block)
        co_return std::unexpected{block.error()};
    if (const auto stored = m_system.records.putHostsBlock(user, wanted, own); !stored)
        co_return stored;
    auto written = co_await writeHostsFile(std::move(*block));
    if (!written)
        (void)m_system.records.putHostsBlock(user, standing->force, standing->names);
    co_return written;
}

/// The block of every user's names, with these as those of one of them.
Answer<std::string> Protection::unionBlock(std::optional<uid_t> user, BlockNames names) const
{
    const auto users = m_system.records.users();
    if (!users)
        return std::unexpected{users.error()};
    auto text = blockText(names);
    for (const auto other : *users) {
        const auto block = other == user ? StoredBlock{} : m_system.records.hostsBlock(other);
        if (!block)
            return std::unexpected{block.error()};
        const auto others = block->names.all();
        if (others.empty())
            continue;
        text = blockText(unionOf(names, others));
        names = readBlock(text).value_or(BlockNames{}); // of this text: the other's goes
        if (isTooMuch(names, text))
            return tooManyNames();
    }
    if (isTooMuch(names, text))
        return tooManyNames();
    return text;
}

Task<Answer<>> Protection::writeHostsFile(std::string block)
{
    const auto written = co_await m_system.hostsFile.replaceBlock(std::move(block), {}, Permanence::flexible);
    if (!written)
        co_return refusal(written.error());
    co_return Answer<>{};
}

Answer<Consent> Protection::consentToProxy(uid_t user, Force wanted) const
{
    const auto standing = m_system.records.dnsProxy(user);
    if (!standing)
        return std::unexpected{standing.error()};
    return neededConsent(*standing, wanted, false);
}

Task<Answer<>> Protection::applyProxy(uid_t user, Force wanted)
{
    const auto standing = m_system.records.dnsProxy(user);
    if (!standing)
        co_return std::unexpected{standing.error()};
    if (const auto stored = m_system.records.putDNSProxy(user, wanted); !stored)
        co_return stored;
    auto applied = wanted == Force::none ? co_await stopProxy(user) : co_await startProxy(user, wanted);
    if (!applied)
        (void)m_system.records.putDNSProxy(user, *standing);
    if (!applied)
        (void)co_await (*standing == Force::none ? stopProxy(user) : startProxy(user, *standing));
    co_return applied;
}

Task<Answer<>> Protection::startProxy(uid_t user, Force force)
{
    if (const auto made = m_system.folders.make(user); !made)
        co_return made;
    if (const auto marked = m_system.folders.setPermanent(user, force == Force::permanent); !marked)
        co_return marked;
    const auto started = co_await m_system.units.enableAndStart({proxySocketUnit, redirectUnit});
    if (!started)
        co_return refusal(started.error());
    co_return Answer<>{};
}

Task<Answer<>> Protection::stopProxy(uid_t user)
{
    const auto isWanted = isProxyWanted();
    if (!isWanted)
        co_return std::unexpected{isWanted.error()};
    // The redirection first: as long as it stands, nobody but the proxy is asked.
    const auto stopped =
        *isWanted ? Result<void>{} : co_await m_system.units.stopAndDisable({redirectUnit, proxySocketUnit, proxyUnit});
    if (!stopped)
        co_return refusal(stopped.error());
    const auto removed = m_system.folders.remove(user);
    co_return removed ? m_system.folders.setPermanent(user, false) : removed;
}

Answer<bool> Protection::isProxyWanted() const
{
    const auto users = m_system.records.users();
    if (!users)
        return std::unexpected{users.error()};
    for (const auto user : *users) {
        const auto force = m_system.records.dnsProxy(user);
        if (!force || *force != Force::none)
            return true;
    }
    return false;
}

} // namespace stillgate::guard
