#include "Blocking/HostsFileService.h"

#include "Blocking/DomainNames.h"
#include "Blocking/HostsEntries.h"
#include "Platform/HostsBlock.h"

#include <algorithm>
#include <unordered_set>

namespace stillgate
{

namespace
{

/// The setting that holds the key of the list last known to be in the file; "" when nothing is known.
constexpr std::string_view hashKey = "sg_hosts_hash";
/// Whether that list was written to stand for good.
constexpr std::string_view permanentKey = "sg_hosts_permanent";

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
{}

void HostsFileService::applyBlocks(std::vector<std::string> domains, Rewrite rewrite)
{
    if (domains.empty() && m_temporary.empty()) {
        removeBlocks();
        return;
    }
    if (domains.empty())
        rewrite = Rewrite::always; // every file has all of no names
    else if (m_wanted.empty())
        m_wanted = domains;
    auto key = keyOf(domains);
    submit({std::move(domains), std::move(key), rewrite});
}

void HostsFileService::setTemporaryDomains(std::set<std::string> domains)
{
    if (domains.empty() && m_temporary.empty())
        return;
    m_temporary = std::move(domains);
    if (m_waiting)
        return submit(std::move(*m_waiting));
    auto list = listInFile();
    auto key = keyOf(list);
    submit({std::move(list), std::move(key), Rewrite::ifNamesAreMissing});
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
    const bool isEnough = request.rewrite == Rewrite::ifNamesAreMissing && permanenceInFile() == m_permanence &&
        m_temporaryInFile == m_temporary;
    if (isEnough && request.key == m_defaults.string(hashKey).value_or("")) {
        reportWanted(request.domains);
        return;
    }
    if (isEnough && isInFile(request.domains)) {
        m_defaults.setString(hashKey, request.key);
        reportWanted(request.domains);
        return;
    }
    runDetached(write(std::move(request)));
}

/// What the file stands for but for the temporary domains, or will when a write has ended.
std::vector<std::string> HostsFileService::listInFile() const
{
    return m_wanted.empty() ? domainsIn(m_defaults.string(hashKey).value_or("")) : m_wanted;
}

std::vector<std::string> HostsFileService::withTemporary(std::vector<std::string> domains) const
{
    domains.insert(domains.end(), m_temporary.begin(), m_temporary.end());
    return domains;
}

/// Whether a list stands there already. What stands there for temporary domains doesn't count: it goes with them.
bool HostsFileService::isInFile(const std::vector<std::string>& domains) const
{
    std::unordered_set<std::string> names;
    for (const auto& name : getBlockedDomains())
        names.insert(lowercased(name));
    if (!m_temporaryInFile.empty()) {
        const HostNames ofList{m_wanted};
        std::erase_if(names, [&](const auto& name) { return !std::ranges::binary_search(ofList.sorted(), name); });
    }
    return std::ranges::all_of(domains, [&](const auto& domain) { return names.contains(lowercased(domain)); });
}

Task<> HostsFileService::write(BlockRequest request)
{
    m_running = std::make_shared<OneShotEvent>();
    m_wanted = request.domains;
    const auto permanence = m_permanence;
    const auto temporary = m_temporary;
    const auto written =
        co_await m_writer.replaceBlock(generateHostsEntries(withTemporary(request.domains)), permanence);
    if (written) {
        m_defaults.setString(hashKey, request.key);
        setPermanenceInFile(permanence);
        m_temporaryInFile = temporary;
        reportWanted(request.domains);
    } else {
        m_log.write("[HostsFile] Failed to apply blocks");
        report(false, 0);
        // The same list has just been tried.
        if (m_waiting && m_waiting->key == request.key && m_temporary == temporary)
            m_waiting.reset();
    }
    continueWithWaiting();
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
    const auto wanted = withTemporary(listInFile());
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
    auto list = listInFile();
    m_defaults.setString(hashKey, "");
    applyBlocks(std::move(list), Rewrite::always);
}

void HostsFileService::removeBlocks()
{
    m_wanted.clear();
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
    m_defaults.setString(hashKey, ""); // a write that ended since has set it
    if (const auto removed = co_await m_writer.removeBlock())
        m_temporaryInFile.clear();
    else
        m_log.write("[HostsFile] Failed to remove blocks");
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
