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

std::unique_ptr<DomainSet> UserSets::makeUnion() const
{
    std::size_t count = 1;
    for (const auto& [name, user] : m_users)
        count += user.count;
    auto names = std::make_unique<DomainSet>(m_stored.key(), count);
    names->insert(DomainName::fromText(canary).value());
    for (const auto& [name, user] : m_users) {
        if (user.unstored)
            names->insert(user.unstored->hashes);
        else if (const auto set = m_stored.load(name); set && set->hashes.size() == user.count)
            names->insert(set->hashes);
    }
    return names;
}

void UserSets::store()
{
    for (auto& [name, user] : m_users) {
        if (!user.unstored)
            continue;
        const auto stored = m_stored.store(name, *user.unstored);
        user.canStore = stored.has_value();
        if (stored)
            user.unstored.reset();
        else
            m_log.write("[DNSProxy] The set of user " + name + " isn't kept: " + stored.error().description());
    }
}

std::vector<std::string> UserSets::faults() const
{
    std::vector<std::string> faults;
    if (!m_groupFault.empty())
        faults.push_back(m_groupFault);
    for (const auto& [name, user] : m_users) {
        if (!user.fault.empty())
            faults.push_back("user " + name + ": " + user.fault);
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
        if (const auto set = m_stored.load(name))
            m_users[name] = {.examined = set->source,
                .unstored = {},
                .digest = digestOf(set->hashes),
                .count = set->hashes.size(),
                .fault = {}};
    }
}

/// True if the user's set is another one now.
bool UserSets::refresh(const std::string& name, User& user)
{
    const auto config = m_group.open(name);
    if (!config) {
        const bool isNewUser = config.error().systemCode() == ENOENT && !user.digest;
        setFault(name, user, isNewUser ? "" : config.error().description());
        user.examined.reset();
        return false;
    }
    if (config->stamp == user.examined)
        return false;
    auto names = readBlockedConfig(config->file.number(), config->stamp.size, m_stored.key());
    user.examined.reset();
    if (isSettled(config->file.number(), config->stamp))
        user.examined = config->stamp;
    setFault(name, user, names ? "" : names.error().description());
    return names && take(name, user, std::move(*names), user.examined);
}

bool UserSets::take(const std::string& name, User& user, HashedNames names, const std::optional<FileStamp>& stamp)
{
    const auto digest = digestOf(names.hashes);
    const bool isSame = std::exchange(user.digest, digest) == digest;
    if (isSame && !stamp)
        return false;
    user.count = names.hashes.size();
    user.unstored = {.source = stamp.value_or(FileStamp{}), .hashes = std::move(names.hashes)};
    m_log.write("[DNSProxy] User " + name + ": " + std::to_string(user.count) + " names, " +
        std::to_string(names.skipped) + " entries that are none");
    return !isSame;
}

void UserSets::setFault(const std::string& name, User& user, std::string fault)
{
    if (!fault.empty() && fault != user.fault)
        m_log.write("[DNSProxy] User " + name + ": " + fault + "; the last good set stays in force");
    user.fault = std::move(fault);
}

} // namespace stillgate::dns
