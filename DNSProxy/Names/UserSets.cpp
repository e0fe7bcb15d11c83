#include "Names/UserSets.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <numeric>
#include <sys/stat.h>

namespace stillgate::dns
{

namespace
{

/// Firefox asks for it to know whether it may go round the resolver of the system; NXDOMAIN says that it may not.
constexpr std::string_view canary = "use-application-dns.net";

/// Whether a change of the file from now on gives it another stamp: the kernel's clock of files moves in steps.
bool isSettled(int file, const FileStamp& stamp)
{
    using namespace std::chrono;
    constexpr nanoseconds longestStep = 20ms;
    struct stat status{};
    const auto now = system_clock::now().time_since_epoch();
    const bool isSame = ::fstat(file, &status) == 0 &&
        std::int64_t{status.st_ctim.tv_sec} * 1'000'000'000 + status.st_ctim.tv_nsec == stamp.changed;
    return isSame && now - nanoseconds{stamp.changed} > longestStep;
}

/// The same for the same hashes in whatever order, and another one for others but by chance.
std::uint64_t digestOf(const std::vector<std::uint64_t>& hashes)
{
    return std::accumulate(hashes.begin(), hashes.end(), hashes.size());
}

} // namespace

UserSets::UserSets(std::filesystem::path group, std::filesystem::path state, Log& log)
    : m_group(std::move(group))
    , m_stored(std::move(state))
    , m_log(log)
{
    addStored();
}

bool UserSets::refresh()
{
    const auto present = m_group.users();
    m_groupFault = present ? "" : present.error().description();
    if (!present)
        return false;
    bool hasChanged = removeGone(*present);
    for (const auto& name : *present)
        m_users.try_emplace(name);
    for (auto& [name, user] : m_users)
        hasChanged = refresh(name, user) || hasChanged;
    return hasChanged;
}

std::unique_ptr<DomainSet> UserSets::makeUnion()
{
    const auto canaryName = DomainName::fromText(canary).value();
    auto names = std::make_unique<DomainSet>(m_stored.key(), count() + 1);
    names->insert(canaryName);
    for (auto& [name, user] : m_users) {
        if (insertInto(*names, name, user))
            continue;
        names.reset();
        // Each time one set fewer is read from where it was stored.
        return recover(name, user) ? makeUnion() : nullptr;
    }
    m_hasUnion = true;
    return names;
}

void UserSets::store()
{
    for (auto& [name, user] : m_users) {
        if (!user.unstored)
            continue;
        const auto stored = m_stored.store(name, *user.unstored);
        const bool couldStore = std::exchange(user.canStore, stored.has_value());
        if (stored)
            user.unstored.reset();
        else if (couldStore)
            m_log.write("[DNSProxy] The set of user " + name + " isn't kept: " + stored.error().description());
    }
}

bool UserSets::hasUnstored() const
{
    return std::ranges::any_of(m_users, [](const auto& user) { return user.second.unstored.has_value(); });
}

std::vector<std::string> UserSets::faults() const
{
    std::vector<std::string> faults;
    if (!m_groupFault.empty())
        faults.push_back(m_groupFault);
    if (m_stored.isKeyDamaged())
        faults.emplace_back("the key of the stored sets is damaged");
    for (const auto& [name, user] : m_users) {
        if (!user.fault.empty())
            faults.push_back("user " + name + ": " + user.fault);
        if (user.isLost)
            faults.push_back("user " + name + ": the stored set is damaged");
        if (!user.canStore)
            faults.push_back("user " + name + ": the set isn't stored");
    }
    return faults;
}

std::vector<std::filesystem::path> UserSets::folders() const
{
    std::vector<std::filesystem::path> folders{m_group.path()};
    for (const auto& [name, user] : m_users)
        folders.push_back(m_group.folderOf(name));
    return folders;
}

bool UserSets::removeGone(const std::vector<std::string>& present)
{
    return std::erase_if(m_users, [&](const auto& user) {
        const bool isGone = !std::ranges::binary_search(present, user.first);
        if (isGone) {
            m_stored.remove(user.first);
            m_log.write("[DNSProxy] User " + user.first + " has no set any more");
        }
        return isGone;
    }) > 0;
}

void UserSets::addStored()
{
    for (const auto& name : m_stored.users()) {
        auto& user = m_users[name];
        if (const auto set = m_stored.load(name))
            user = {.examined = set->source,
                .unstored = {},
                .digest = digestOf(set->hashes),
                .count = set->hashes.size(),
                .fault = {},
                .isPermanent = m_group.isPermanent(name)};
        else
            setLost(name, user);
    }
}

/// False if the set has to be read from where it is stored, and can't be.
bool UserSets::insertInto(DomainSet& names, const std::string& name, const User& user) const
{
    if (user.unstored) {
        names.insert(user.unstored->hashes);
        return true;
    }
    if (user.count == 0)
        return true;
    const auto set = m_stored.load(name);
    const bool isThere = set && set->hashes.size() == user.count;
    if (isThere)
        names.insert(set->hashes);
    return isThere;
}

/// The user's own file may still have the set. At the start there is no union in force, and one without the set is
/// better than none: then it does without.
bool UserSets::recover(const std::string& name, User& user)
{
    setLost(name, user);
    refresh(name, user);
    if (user.isLost && !m_hasUnion)
        user.count = 0;
    return !user.isLost || !m_hasUnion;
}

/// True if the user's set is another one now.
bool UserSets::refresh(const std::string& name, User& user)
{
    const auto config = m_group.open(name);
    if (!config) {
        const bool isNewUser = config.error().systemCode() == ENOENT && !user.digest && !user.isLost;
        setFault(name, user, isNewUser ? "" : config.error().description());
        user.examined.reset();
        return false;
    }
    const bool isPermanent = m_group.isPermanent(name);
    if (config->stamp == user.examined && isPermanent == user.isPermanent)
        return false;
    user.isPermanent = isPermanent;
    user.examined.reset();
    auto names = readBlockedConfig(config->file.number(), config->stamp.size, m_stored.key());
    if (names && isPermanent && !keepNames(name, user, *names)) {
        setLost(name, user);
        return false;
    }
    if (names && count() - user.count + names->hashes.size() > mostNames) {
        setFault(name, user, "no room for more names"); // not examined: others may make room
        return false;
    }
    if (isSettled(config->file.number(), config->stamp))
        user.examined = config->stamp;
    setFault(name, user, names ? "" : names.error().description());
    return names && take(name, user, std::move(*names), user.examined);
}

/// Adds the names that the user has now. False if they can't be read.
bool UserSets::keepNames(const std::string& name, const User& user, HashedNames& names) const
{
    if (!user.unstored && user.count == 0)
        return true;
    const auto stored = user.unstored ? user.unstored : m_stored.load(name);
    if (!stored || stored->hashes.size() != user.count)
        return false;
    auto& hashes = names.hashes;
    hashes.insert(hashes.end(), stored->hashes.begin(), stored->hashes.end());
    std::ranges::sort(hashes);
    const auto rest = std::ranges::unique(hashes);
    hashes.erase(rest.begin(), rest.end());
    return true;
}

bool UserSets::take(const std::string& name, User& user, HashedNames names, const std::optional<FileStamp>& stamp)
{
    const auto digest = digestOf(names.hashes);
    const bool isSame = std::exchange(user.digest, digest) == digest;
    if (isSame && !stamp)
        return false;
    user.isLost = false;
    user.count = names.hashes.size();
    user.unstored = {.source = stamp.value_or(FileStamp{}), .hashes = std::move(names.hashes)};
    m_log.write("[DNSProxy] User " + name + ": " + std::to_string(user.count) + " names, " +
        std::to_string(names.skipped) + " entries that are none");
    return !isSame;
}

std::size_t UserSets::count() const
{
    return std::accumulate(m_users.begin(), m_users.end(), std::size_t{0},
        [](std::size_t sum, const auto& user) { return sum + user.second.count; });
}

void UserSets::setLost(const std::string& name, User& user)
{
    if (!std::exchange(user.isLost, true))
        m_log.write("[DNSProxy] User " + name + ": the stored set is damaged");
    user.examined.reset();
    user.digest.reset(); // whatever the file has is another set
}

void UserSets::setFault(const std::string& name, User& user, std::string fault)
{
    if (!fault.empty() && fault != user.fault)
        m_log.write(
            "[DNSProxy] User " + name + ": " + fault + (user.isLost ? "" : "; the last good set stays in force"));
    user.fault = std::move(fault);
}

} // namespace stillgate::dns
