#include "Blocking/HostsEntries.h"
#include "FuzzTarget.h"
#include "Platform/HostsBlock.h"
#include "Require.h"

#include <algorithm>

namespace stillgate
{

namespace
{

using Lines = std::vector<std::string_view>;

constexpr std::string_view hostName = "laptop";

/// Without their line feeds; no line behind the last one's.
Lines linesOf(std::string_view text)
{
    Lines lines;
    while (!text.empty()) {
        const auto feed = text.find('\n');
        lines.push_back(text.substr(0, feed));
        text.remove_prefix(feed == std::string_view::npos ? text.size() : feed + 1);
    }
    return lines;
}

bool isSubsequence(const Lines& part, const Lines& whole)
{
    auto next = part.begin();
    for (const auto line : whole) {
        if (next != part.end() && line == *next)
            ++next;
    }
    return next == part.end();
}

bool isStart(std::string_view line)
{
    return line.contains(hostsMarker);
}

bool isEnd(std::string_view line)
{
    return !isStart(line) && line.contains(hostsMarkerEnd);
}

bool isMarker(std::string_view line)
{
    return isStart(line) || isEnd(line);
}

/// What no removal may take. An empty line can be the one ahead of a block, and behind a start without an end, lines
/// like ours may be ours.
Lines linesOfTheUser(const Lines& lines)
{
    Lines kept;
    bool mayBeOurs = false;
    for (auto line = lines.begin(); line != lines.end(); ++line) {
        if (isStart(*line)) {
            const auto next = std::find_if(line + 1, lines.end(), isMarker);
            mayBeOurs = next == lines.end() || !isEnd(*next);
            if (!mayBeOurs)
                line = next;
            continue;
        }
        const bool isLikeOurs = line->starts_with("127.0.0.1 ") && *line != "127.0.0.1 localhost";
        if (!line->empty() && !(mayBeOurs && isLikeOurs))
            kept.push_back(*line);
    }
    return kept;
}

void requireRemoval(std::string_view text, std::string_view rest)
{
    require(withoutHostsBlocks(rest, hostName) == rest, "removing twice is removing once");
    require(hostsBlockNames(rest, hostName).empty(), "no block is left");
    require(text.contains(hostsMarker) || rest == text, "a file without a block stays as it is");

    const auto lines = linesOf(text);
    const auto restLines = linesOf(rest);
    require(isSubsequence(linesOfTheUser(lines), restLines), "every line of the user's stays");
    require(isSubsequence(restLines, lines), "nothing is added or moved");
}

void requireUntouchedAhead(std::string_view text, std::string_view rest)
{
    const auto marker = std::min(text.find(hostsMarker), text.size());
    const auto lineFeed = text.substr(0, marker).rfind('\n');
    const auto ahead = text.substr(0, lineFeed == std::string_view::npos ? 0 : lineFeed);
    require(rest.starts_with(ahead), "what stands ahead of the first block stays to the byte");
}

void requireBlockComesAndGoes(const std::string& rest)
{
    const std::vector<std::string> domains{"example.com"};
    const auto withBlock = rest + generateHostsEntries(domains);
    require(withoutHostsBlocks(withBlock, hostName) == rest, "a block goes without a trace");
    require(std::ranges::equal(hostsBlockNames(withBlock, hostName), HostNames{domains}.sorted()),
        "the names of the block are those it was made of");
}

} // namespace

} // namespace stillgate

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace stillgate;

    const auto text = textOf(data, size);
    const auto rest = withoutHostsBlocks(text, hostName);
    requireRemoval(text, rest);
    requireUntouchedAhead(text, rest);
    requireBlockComesAndGoes(rest);
    static_cast<void>(hostsBlockNames(text, hostName));
    return 0;
}
