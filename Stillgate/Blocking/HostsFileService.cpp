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

/// The list, sorted and joined: the same for every order of the same domains.
std::string keyOf(std::vector<std::string> domains)
{
    std::ranges::sort(domains);
    std::string key;
    for (const auto& domain : domains)
        key.append(key.empty() ? "" : ",").append(domain);
    return key;
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
    if (request.key == m_defaults.string(hashKey).value_or("")) {
        report(true, request.domains.size());
        return;
    }
    if (request.rewrite == Rewrite::ifNamesAreMissing && isInFile(request.domains)) {
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
    const auto written = co_await m_writer.replaceBlock(generateHostsEntries(request.domains));
    if (written) {
        m_defaults.setString(hashKey, request.key);
    } else {
        m_log.write("[HostsFile] Failed to apply blocks");
        // The same list has just been tried.
        if (m_waiting && m_waiting->key == request.key)
            m_waiting.reset();
    }
    report(written.has_value(), written ? request.domains.size() : 0);
    continueWithWaiting();
}

void HostsFileService::removeBlocks()
{
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
    (void)co_await m_writer.removeBlock();
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
