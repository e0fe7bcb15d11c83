#include "Guard/Records.h"

#include "Blocking/DomainNames.h"
#include "Platform/HostsBlock.h"

#include <algorithm>
#include <cerrno>
#include <charconv>

namespace stillgate::guard
{

namespace fs = std::filesystem;

namespace
{

constexpr auto hostsBlockFile = "hosts-block";
constexpr auto dnsProxyFile = "dns-proxy";

/// The first line of a record.
constexpr std::string_view flexibleLine = "flexible\n";
constexpr std::string_view permanentLine = "permanent\n";

/// Between the block of the lasting names, if there are any, and that of the temporary ones. No block has such a line.
constexpr std::string_view temporaryLine = "# temporary\n";

std::string textOf(const UserNames& names)
{
    auto text = blockText(names.lasting);
    if (!names.temporary.empty())
        text.append(temporaryLine).append(blockText(names.temporary));
    return text;
}

Answer<UserNames> namesIn(std::string_view text)
{
    const auto end = text.find(temporaryLine);
    const bool hasTemporary = end != std::string_view::npos;
    auto lasting = hasTemporary && end == 0 ? BlockNames{} : readBlock(text.substr(0, end));
    auto temporary = hasTemporary ? readBlock(text.substr(end + temporaryLine.size())) : BlockNames{};
    if (!lasting || !temporary)
        return std::unexpected{lasting ? temporary.error() : lasting.error()};
    return UserNames{std::move(*lasting), std::move(*temporary)};
}

} // namespace

Records::Records(fs::path folder, std::string hostName, FileManager& files, Log& log)
    : m_folder(std::move(folder))
    , m_hostName(std::move(hostName))
    , m_files(files)
    , m_log(log)
{}

Answer<StoredBlock> Records::hostsBlock(uid_t user)
{
    auto record = read(path(user, hostsBlockFile));
    if (!record)
        return std::unexpected{record.error()};
    StoredBlock block{std::make_unique<const std::string>(std::move(record->content)), record->force, {}};
    if (block.force == Force::none)
        return block;
    auto names = namesIn(*block.text);
    if (!names) {
        const auto replaced = replaceDamaged(user, block);
        return replaced ? hostsBlock(user) : std::unexpected{replaced.error()};
    }
    block.names = std::move(*names);
    return block;
}

/// With every user's names: nobody can tell any more which of those in force were this one's.
Answer<> Records::replaceDamaged(uid_t user, const StoredBlock& damaged)
{
    const auto aside = path(user, hostsBlockFile).string() + ".damaged";
    m_log.write("[Guard] A damaged record is kept as " + aside + "; names in the hosts file take its place");
    const auto hosts = m_files.read(hostsPath);
    if (!hosts && hosts.error().systemCode() != ENOENT)
        return refusal(hosts.error());
    if (const auto kept = m_files.write(aside, *damaged.text, {}); !kept)
        return refusal(kept.error());
    auto names = hosts ? hostsBlockNames(*hosts, m_hostName) : std::vector<std::string>{};
    std::erase_if(names, [](const std::string& name) { return !isDomainName(name); });
    std::ranges::sort(names);
    names.erase(std::unique(names.begin(), names.end()), names.end());
    return putHostsBlock(user, damaged.force, {.lasting = {names.begin(), names.end()}, .temporary = {}});
}

Answer<> Records::putHostsBlock(uid_t user, Force force, const UserNames& names)
{
    if (names.lasting.empty())
        force = names.temporary.empty() ? Force::none : Force::flexible;
    return write(path(user, hostsBlockFile), force, textOf(names));
}

Answer<Force> Records::dnsProxy(uid_t user) const
{
    const auto record = read(path(user, dnsProxyFile));
    if (!record)
        return std::unexpected{record.error()};
    return record->force;
}

Answer<> Records::putDNSProxy(uid_t user, Force force)
{
    return write(path(user, dnsProxyFile), force, {});
}

Answer<std::vector<uid_t>> Records::users() const
{
    std::error_code code;
    std::vector<uid_t> users;
    for (fs::directory_iterator entry{m_folder, code}, end; !code && entry != end; entry.increment(code)) {
        const auto name = entry->path().filename().string();
        uid_t user = 0;
        const auto [rest, problem] = std::from_chars(name.data(), name.data() + name.size(), user);
        if (problem == std::errc{} && rest == name.data() + name.size())
            users.push_back(user);
    }
    if (code && code != std::errc::no_such_file_or_directory)
        return refusal(Error{SystemFailure{"read " + m_folder.string(), code.value()}});
    std::ranges::sort(users);
    return users;
}

fs::path Records::path(uid_t user, const char* name) const
{
    return m_folder / std::to_string(user) / name;
}

Answer<Records::Record> Records::read(const fs::path& path) const
{
    auto bytes = m_files.read(path);
    if (!bytes && bytes.error().systemCode() == ENOENT)
        return Record{};
    if (!bytes)
        return refusal(bytes.error());
    for (const auto& [force, line] : {std::pair{Force::flexible, flexibleLine}, {Force::permanent, permanentLine}}) {
        if (bytes->starts_with(line))
            return Record{force, bytes->substr(line.size())};
    }
    return Record{Force::permanent, std::move(*bytes)}; // damaged, which must not make anything easier to undo
}

Answer<> Records::write(const fs::path& path, Force force, std::string_view content)
{
    if (force == Force::none) {
        const auto removed = m_files.remove(path);
        if (!removed && removed.error().systemCode() != ENOENT)
            return refusal(removed.error());
        std::error_code ignored;
        fs::remove(path.parent_path(), ignored); // which fails while the other record is in it
        return {};
    }
    std::string bytes{force == Force::permanent ? permanentLine : flexibleLine};
    bytes += content;
    if (const auto made = m_files.createDirectory(path.parent_path()); !made)
        return refusal(made.error());
    if (const auto written = m_files.write(path, bytes, {}); !written)
        return refusal(written.error());
    return {};
}

} // namespace stillgate::guard
