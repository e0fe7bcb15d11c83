#include "Blocking/HostsFileService.h"

#include "Blocking/DomainNames.h"
#include "Blocking/HostsEntries.h"
#include "Platform/HostsBlock.h"

#include <algorithm>
#include <iterator>
#include <unordered_set>

namespace stillgate
{

namespace
{

/// The setting that holds the key of the list last known to be in the file; "" when nothing is known.
constexpr std::string_view hashKey = "sg_hosts_hash";
/// Whether that list was written to stand for good.
constexpr std::string_view permanentKey = "sg_hosts_permanent";
/// Whether the file may hold names of temporary domains.
constexpr std::string_view temporaryKey = "sg_hosts_temporary";

/// The list, sorted and joined: the same for every order of the same domains.
std::string keyOf(std::vector<std::string> domains)
{
    std::ranges::sort(domains);
    std::string key;
    for (const auto& domain : domains)
        key.append(key.empty() ? "" : ",").append(domain);
    return key;
}

std::vector<std::string> domainsIn(std::string_view key)
{
    std::vector<std::string> domains;
    while (!key.empty()) {
        const auto comma = std::min(key.find(','), key.size());
        domains.emplace_back(key.substr(0, comma));
        key.remove_prefix(std::min(comma + 1, key.size()));
    }
    return domains;
}

} // namespace

HostsFileService::HostsFileService(
    HostsFileWriter& writer, FileManager& files, UserDefaults& defaults, Host& host, Log& log)
    : m_writer(writer)
    , m_files(files)
    , m_defaults(defaults)
    , m_host(host)
    , m_log(log)
    , m_permanence(permanenceInFile())
{}

void HostsFileService::applyBlocks(std::vector<std::string> domains, Rewrite rewrite)
{
    if (domains.empty() && m_temporary.empty()) {
        removeBlocks();
        return;
    }
    if (rewrite == Rewrite::ifPartIsMissing && isPartOfLastList(domains))
        domains = lastList();
    if (rewrite == Rewrite::always || domains.empty()) // every file has all of no names
        m_isRewriteDue = true;
    auto key = keyOf(domains);
    submit({std::move(domains), std::move(key)});
}

bool HostsFileService::isPartOfLastList(const std::vector<std::string>& domains) const
{
    const std::unordered_set<std::string_view> last{lastList().begin(), lastList().end()};
    return !domains.empty() && std::ranges::all_of(domains, [&](const auto& domain) { return last.contains(domain); });
}

/// The list last asked for; none if that isn't known since the start.
const std::vector<std::string>& HostsFileService::lastList() const
{
    static const std::vector<std::string> none;
    if (m_waiting)
        return m_waiting->domains;
    return m_wanted ? *m_wanted : none;
}

void HostsFileService::setTemporaryDomains(std::set<std::string> domains)
{
    if (domains.empty() && m_temporary.empty())
        return;
    m_temporary = std::move(domains);
    if (m_waiting)
        return submit(std::move(*m_waiting));
    auto list = wantedList();
    auto key = keyOf(list);
    submit({std::move(list), std::move(key)});
}

void HostsFileService::submit(BlockRequest request)
{
    if (!m_running) {
        apply(std::move(request));
        return;
    }
    reportWanted(request.domains);
    m_waiting = std::move(request);
}

void HostsFileService::apply(BlockRequest request)
{
    if (request.domains.empty() && m_temporary.empty()) {
        runDetached(remove());
        return;
    }
    const bool isEnough = !m_isRewriteDue && permanenceInFile() == m_permanence && isListThere(request);
    if (!isEnough || m_temporaryInFile != m_temporary) {
        auto list = isEnough ? fullerList(request.domains) : request.domains;
        runDetached(write(std::move(request), std::move(list)));
        return;
    }
    if (request.key != m_defaults.string(hashKey).value_or(""))
        m_defaults.setString(hashKey, request.key);
    if (m_written.empty())
        m_written = request.domains;
    reportWanted(request.domains);
    m_wanted = std::move(request.domains);
}

bool HostsFileService::isListThere(const BlockRequest& request) const
{
    return request.key == m_defaults.string(hashKey).value_or("") || isInFile(request.domains);
}

/// What the file stands for but for the temporary domains, if the list is a part of that: names beyond a list stay
/// also when temporary domains come and go.
std::vector<std::string> HostsFileService::fullerList(const std::vector<std::string>& domains) const
{
    const HostNames written{m_written};
    const bool isPart = !domains.empty() && std::ranges::all_of(domains, [&](const auto& domain) {
        return std::ranges::binary_search(written.sorted(), lowercased(domain));
    });
    return isPart ? m_written : domains;
}

/// The last list, or will be when a write has ended.
std::vector<std::string> HostsFileService::wantedList() const
{
    return m_wanted ? *m_wanted : domainsIn(m_defaults.string(hashKey).value_or(""));
}

std::vector<std::string> HostsFileService::withTemporary(std::vector<std::string> domains) const
{
    domains.insert(domains.end(), m_temporary.begin(), m_temporary.end());
    return domains;
}

/// The names that the temporary domains add to a list.
std::vector<std::string> HostsFileService::temporaryNamesBeyond(const std::vector<std::string>& list) const
{
    if (m_temporary.empty())
        return {};
    const HostNames ofList{list};
    const HostNames temporary{{m_temporary.begin(), m_temporary.end()}};
    std::vector<std::string_view> names;
    std::ranges::set_difference(temporary.sorted(), ofList.sorted(), std::back_inserter(names));
    return {names.begin(), names.end()};
}

/// Whether a list stands there already. What stands there for temporary domains doesn't count: it goes with them.
bool HostsFileService::isInFile(const std::vector<std::string>& domains) const
{
    std::unordered_set<std::string> names;
    for (const auto& name : getBlockedDomains())
        names.insert(lowercased(name));
    if (!m_temporaryInFile.empty()) {
        const HostNames ofList{m_written};
        std::erase_if(names, [&](const auto& name) { return !std::ranges::binary_search(ofList.sorted(), name); });
    }
    return std::ranges::all_of(domains, [&](const auto& domain) { return names.contains(lowercased(domain)); });
}

Task<> HostsFileService::write(BlockRequest request, std::vector<std::string> list)
{
    m_running = std::make_shared<OneShotEvent>();
    m_wanted = request.domains;
    const bool takesNamesOut = std::exchange(m_isRewriteDue, false);
    const auto permanence = m_permanence;
    const auto temporary = m_temporary;
    if (!temporary.empty())
        m_defaults.setBoolean(temporaryKey, true); // first: the process may die before it knows the outcome
    const auto written = co_await m_writer.replaceBlock(
        generateHostsEntries(withTemporary(list)), temporaryNamesBeyond(list), permanence);
    if (written) {
        m_defaults.setString(hashKey, request.key);
        setPermanenceInFile(permanence);
        m_written = std::move(list);
        m_temporaryInFile = temporary;
        if (temporary.empty() && m_defaults.boolean(temporaryKey))
            m_defaults.setBoolean(temporaryKey, false);
        reportWanted(request.domains);
    } else {
        m_log.write("[HostsFile] Failed to apply blocks");
        report(false, 0);
        m_isRewriteDue = m_isRewriteDue || takesNamesOut;
        // The same list has just been tried.
        if (m_waiting && m_waiting->key == request.key && m_temporary == temporary)
            m_waiting.reset();
    }
    continueWithWaiting();
}

bool HostsFileService::hasTemporaryOfEarlierProcess() const
{
    return m_temporary.empty() && m_temporaryInFile.empty() && m_defaults.boolean(temporaryKey);
}

Permanence HostsFileService::permanenceInFile() const
{
    return m_defaults.boolean(permanentKey) ? Permanence::permanent : Permanence::flexible;
}

void HostsFileService::setPermanenceInFile(Permanence permanence)
{
    if (permanence != permanenceInFile())
        m_defaults.setBoolean(permanentKey, permanence == Permanence::permanent);
}

bool HostsFileService::isIntact() const
{
    if (hasTemporaryOfEarlierProcess())
        return false;
    const auto wanted = withTemporary(wantedList());
    if (wanted.empty())
        return true;
    const auto text = m_files.read(hostsPath);
    const auto names = text ? intactHostsBlockNames(*text) : std::nullopt;
    if (!names)
        return false;
    const HostNames wantedNames{wanted};
    std::vector<std::string_view> expected(wantedNames.sorted().begin(), wantedNames.sorted().end());
    std::erase_if(expected, [machine = m_host.name()](auto name) { return isNameOfMachine(name, machine); });
    return std::ranges::includes(*names, expected);
}

void HostsFileService::repair()
{
    auto list = wantedList();
    m_defaults.setString(hashKey, "");
    applyBlocks(std::move(list), Rewrite::always);
}

void HostsFileService::removeBlocks()
{
    m_wanted.emplace();
    m_temporary.clear();
    m_defaults.setString(hashKey, "");
    if (m_running) {
        m_removalWaits = true;
        m_waiting.reset();
    } else {
        runDetached(remove());
    }
}

Task<> HostsFileService::remove()
{
    m_running = std::make_shared<OneShotEvent>();
    m_removalWaits = false;
    m_isRewriteDue = false;
    m_written.clear();
    m_defaults.setString(hashKey, ""); // a write that ended since has set it
    if (const auto removed = co_await m_writer.removeBlock()) {
        m_temporaryInFile.clear();
        m_defaults.setBoolean(temporaryKey, false);
    } else {
        m_log.write("[HostsFile] Failed to remove blocks");
    }
    setPermanenceInFile(Permanence::flexible);
    report(false, 0);
    continueWithWaiting();
}

std::vector<std::string> HostsFileService::getBlockedDomains() const
{
    const auto text = m_files.read(hostsPath);
    if (!text || !QByteArrayView{*text}.isValidUtf8())
        return {};
    return hostsBlockNames(*text, m_host.name());
}

Task<> HostsFileService::settled()
{
    while (const auto running = m_running)
        co_await *running;
}

void HostsFileService::reportWanted(const std::vector<std::string>& domains)
{
    const auto isNew = [&](const auto& domain) { return std::ranges::find(domains, domain) == domains.end(); };
    const auto count = domains.size() + static_cast<std::size_t>(std::ranges::count_if(m_temporary, isNew));
    report(true, count);
}

void HostsFileService::report(bool active, std::size_t count)
{
    isActive = active;
    blockedCount = static_cast<qint64>(count);
}

void HostsFileService::continueWithWaiting()
{
    const auto ended = std::exchange(m_running, nullptr);
    if (m_removalWaits)
        runDetached(remove());
    else if (auto waiting = std::exchange(m_waiting, std::nullopt))
        apply(std::move(*waiting));
    ended->happen();
}

} // namespace stillgate
