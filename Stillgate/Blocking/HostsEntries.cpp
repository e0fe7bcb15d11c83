#include "Blocking/HostsEntries.h"

#include "Blocking/DomainNames.h"
#include "Platform/HostsBlock.h"
#include "Platform/Text.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <map>
#include <span>

namespace stillgate
{

namespace
{

constexpr std::array<std::string_view, 7> prefixes{"", "www.", "m.", "mobile.", "api.", "cdn.", "static."};

/// The sites that belong to a domain, one level deep.
const std::map<std::string_view, std::vector<std::string_view>> relatedDomains{
    {"twitter.com", {"x.com", "t.co", "twimg.com", "twitpic.com", "tweetdeck.com"}},
    {"x.com", {"twitter.com", "t.co", "twimg.com", "twitpic.com", "tweetdeck.com"}},
    {"facebook.com", {"fb.com", "fbcdn.net", "fbsbx.com", "messenger.com", "fb.me"}},
    {"instagram.com", {"cdninstagram.com", "ig.me"}},
    {"tiktok.com", {"tiktokcdn.com", "musical.ly", "tiktokv.com"}},
    {"youtube.com", {"youtu.be", "ytimg.com", "yt.be", "googlevideo.com"}},
    {"reddit.com", {"redd.it", "redditmedia.com", "redditstatic.com"}},
    {"snapchat.com", {"snap.com", "sc-cdn.net", "snapkit.co"}},
    {"pinterest.com", {"pinimg.com", "pin.it"}},
    {"linkedin.com", {"licdn.com"}},
    {"twitch.tv", {"twitchcdn.net", "jtvnw.net"}},
    {"discord.com", {"discord.gg", "discordapp.com", "discordapp.net"}},
    {"telegram.org", {"t.me", "telegram.me"}},
    {"whatsapp.com", {"whatsapp.net", "wa.me"}},
};

void sortAndDeduplicate(std::vector<std::string>& names)
{
    std::ranges::sort(names);
    const auto rest = std::ranges::unique(names);
    names.erase(rest.begin(), rest.end());
}

/// The names without prefixes, ascending.
std::vector<std::string> bareNames(const std::vector<std::string>& domains)
{
    std::vector<std::string> names;
    names.reserve(domains.size());
    for (const auto& domain : domains) {
        auto name = lowercased(trimmed(domain));
        if (!isDomainName(name))
            continue;
        if (const auto related = relatedDomains.find(name); related != relatedDomains.end())
            names.insert(names.end(), related->second.begin(), related->second.end());
        names.push_back(std::move(name));
    }
    sortAndDeduplicate(names);
    return names;
}

std::string withEachPrefix(const std::vector<std::string>& bare)
{
    std::string bytes;
    for (const auto prefix : prefixes) {
        for (const auto& name : bare) {
            bytes += prefix;
            bytes += name;
        }
    }
    return bytes;
}

std::vector<std::string_view> split(std::string_view bytes, const std::vector<std::string>& bare)
{
    std::vector<std::string_view> names;
    names.reserve(bare.size() * prefixes.size());
    for (const auto prefix : prefixes) {
        for (const auto& name : bare) {
            names.push_back(bytes.substr(0, prefix.size() + name.size()));
            bytes.remove_prefix(names.back().size());
        }
    }
    return names;
}

/// Sorts a list that consists of ascending runs of one length. One prefix leaves the order of the bare names as it
/// is, so the runs are there already, and merging them costs a fraction of sorting seven times as many names.
void mergeRuns(std::vector<std::string_view>& names, std::size_t runLength)
{
    std::vector<std::string_view> merged(names.size());
    for (auto length = runLength; length < names.size(); length *= 2) {
        auto out = merged.begin();
        for (std::size_t begin = 0; begin < names.size(); begin += 2 * length) {
            const auto middle = std::min(begin + length, names.size());
            const auto end = std::min(middle + length, names.size());
            const std::span all{names};
            out = std::ranges::merge(all.subspan(begin, middle - begin), all.subspan(middle, end - middle), out).out;
        }
        names.swap(merged);
    }
}

} // namespace

HostNames::HostNames(const std::vector<std::string>& domains)
{
    const auto bare = bareNames(domains);
    m_bytes = withEachPrefix(bare);
    m_sorted = split(m_bytes, bare);
    if (!bare.empty())
        mergeRuns(m_sorted, bare.size());
    const auto rest = std::ranges::unique(m_sorted);
    m_sorted.erase(rest.begin(), rest.end());
}

std::string generateHostsEntries(const std::vector<std::string>& domains)
{
    constexpr std::string_view address = "127.0.0.1 ";
    const HostNames names{domains};
    std::string text;
    std::size_t size = hostsMarker.size() + hostsMarkerEnd.size() + 3;
    for (const auto name : names.sorted())
        size += address.size() + name.size() + 1;
    text.reserve(size);

    text.append("\n").append(hostsMarker).append("\n");
    for (const auto name : names.sorted())
        text.append(address).append(name).append("\n");
    text.append(hostsMarkerEnd).append("\n");
    return text;
}

} // namespace stillgate
