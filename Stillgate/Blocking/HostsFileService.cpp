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
    if (domains.empty()) {
        removeBlocks();
        return;
    }
    if (m_wanted.empty())
        m_wanted = domains;
    auto key = keyOf(domains);
    BlockRequest request{std::move(domains), std::move(key), rewrite};
    if (!m_running) {
        apply(std::move(request));
        return;
    }
    report(true, request.domains.size());
    m_waiting = std::move(request);
}

void HostsFileService::apply(BlockRequest request)
{
    const bool standsAsWanted = permanenceInFile() == m_permanence;
    if (standsAsWanted && request.key == m_defaults.string(hashKey).value_or("")) {
        report(true, request.domains.size());
        return;
    }
    if (standsAsWanted && request.rewrite == Rewrite::ifNamesAreMissing && isInFile(request.domains)) {
        m_defaults.setString(hashKey, request.key);
        report(true, request.domains.size());
        return;
    }
    runDetached(write(std::move(request)));
}

bool HostsFileService::isInFile(const std::vector<std::string>& domains) const
{
    std::unordered_set<std::string> names;
    for (const auto& name : getBlockedDomains())
        names.insert(lowercased(name));
    return std::ranges::all_of(domains, [&](const auto& domain) { return names.contains(lowercased(domain)); });
}

Task<> HostsFileService::write(BlockRequest request)
{
    m_running = std::make_shared<OneShotEvent>();
    m_wanted = request.domains;
    const auto permanence = m_permanence;
    const auto written = co_await m_writer.replaceBlock(generateHostsEntries(request.domains), permanence);
    if (written) {
        m_defaults.setString(hashKey, request.key);
        setPermanenceInFile(permanence);
    } else {
        m_log.write("[HostsFile] Failed to apply blocks");
        // The same list has just been tried.
        if (m_waiting && m_waiting->key == request.key)
            m_waiting.reset();
    }
    report(written.has_value(), written ? request.domains.size() : 0);
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
    const auto stored = m_defaults.string(hashKey).value_or("");
    const auto wanted = m_wanted.empty() ? domainsIn(stored) : m_wanted;
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
    const auto stored = m_defaults.string(hashKey).value_or("");
    m_defaults.setString(hashKey, "");
    applyBlocks(m_wanted.empty() ? domainsIn(stored) : m_wanted, Rewrite::always);
}

void HostsFileService::removeBlocks()
{
    m_wanted.clear();
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
    if (const auto removed = co_await m_writer.removeBlock(); !removed)
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
