#include "Platform/HostsBlock.h"

#include "Platform/Text.h"

#include <algorithm>

namespace stillgate
{

namespace
{

constexpr std::string_view loopback = "127.0.0.1";

/// A part of the text, from `begin` to before `end`.
struct Span
{
    std::size_t begin = 0;
    std::size_t end = 0;
};

struct Block
{
    Span whole; ///< what goes when the block goes
    Span names; ///< the lines between the markers
};

/// The line that begins at `position`, with its line feed.
Span lineAt(std::string_view text, std::size_t position)
{
    const auto feed = text.find('\n', position);
    return {position, feed == std::string_view::npos ? text.size() : feed + 1};
}

std::string_view textOf(std::string_view text, Span span)
{
    return text.substr(span.begin, span.end - span.begin);
}

std::string_view withoutFeed(std::string_view line)
{
    return line.substr(0, line.find('\n'));
}

bool isStart(std::string_view line)
{
    return line.contains(hostsMarker);
}

bool isEnd(std::string_view line)
{
    return !isStart(line) && line.contains(hostsMarkerEnd);
}

/// The name of a line as we write it; empty for every other line.
std::string_view nameOfOwnLine(std::string_view line)
{
    if (!line.starts_with(loopback) || !line.substr(loopback.size()).starts_with(' '))
        return {};
    const auto name = withoutFeed(line).substr(loopback.size() + 1);
    return name.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789-.") == std::string_view::npos
        ? name
        : std::string_view{};
}

/// Names have no case; `lower` is in lower case.
bool isSameName(std::string_view lower, std::string_view name)
{
    const auto isSame = [](char a, char b) { return a == (b >= 'A' && b <= 'Z' ? b - 'A' + 'a' : b); };
    return std::ranges::equal(lower, name, isSame);
}

/// Whether a name is this machine's, alone or with a domain behind it.
bool isOfHost(std::string_view name, std::string_view hostName)
{
    const auto rest = name.substr(std::min(hostName.size(), name.size()));
    return !hostName.empty() && isSameName(name.substr(0, hostName.size()), hostName) &&
        (rest.empty() || rest.starts_with('.'));
}

/// Where a block without an end marker ends, from the first line behind its start marker on.
std::size_t endOfUnterminated(std::string_view text, std::size_t position, std::string_view hostName)
{
    std::string_view previous;
    while (position < text.size()) {
        const auto line = lineAt(text, position);
        const auto name = nameOfOwnLine(textOf(text, line));
        const bool isOurs = !name.empty() && name > previous && name != "localhost" && !isOfHost(name, hostName);
        if (!isOurs)
            break;
        previous = name;
        position = line.end;
    }
    return position;
}

/// The block whose start marker stands in `startLine`.
Block blockAt(std::string_view text, Span startLine, std::string_view hostName)
{
    for (auto position = startLine.end; position < text.size();) {
        const auto line = lineAt(text, position);
        if (isStart(textOf(text, line)))
            break;
        if (isEnd(textOf(text, line)))
            return {{startLine.begin, line.end}, {startLine.end, line.begin}};
        position = line.end;
    }
    const auto end = endOfUnterminated(text, startLine.end, hostName);
    return {{startLine.begin, end}, {startLine.end, end}};
}

/// With the line feed ahead of the block, unless it ends a line of the user's that another one follows, or that a copy
/// of the block follows: only of a block that stands alone is it known that the line had no end of its own.
Span withFeedAhead(std::string_view text, Span block)
{
    if (block.begin == 0)
        return block;
    const auto feed = block.begin - 1;
    const bool isEmptyLine = feed == 0 || text[feed - 1] == '\n';
    const bool standsAlone = text.find(hostsMarker) == text.rfind(hostsMarker);
    if (isEmptyLine || (standsAlone && block.end == text.size()))
        return {feed, block.end};
    return block;
}

template <class Visitor>
void forEachBlock(std::string_view text, std::string_view hostName, Visitor visit)
{
    for (std::size_t position = 0; position < text.size();) {
        const auto line = lineAt(text, position);
        position = line.end;
        if (!isStart(textOf(text, line)))
            continue;
        const auto block = blockAt(text, line, hostName);
        visit(block);
        position = block.whole.end;
    }
}

} // namespace

std::string withoutHostsBlocks(std::string_view text, std::string_view hostName)
{
    std::string kept;
    std::size_t position = 0;
    forEachBlock(text, hostName, [&](const Block& block) {
        const auto removed = withFeedAhead(text, block.whole);
        kept += textOf(text, {position, std::max(position, removed.begin)});
        position = removed.end;
    });
    kept += text.substr(position);
    return kept;
}

std::vector<std::string> hostsBlockNames(std::string_view text, std::string_view hostName)
{
    std::vector<std::string> names;
    forEachBlock(text, hostName, [&](const Block& block) {
        for (auto position = block.names.begin; position < block.names.end;) {
            const auto line = lineAt(text, position);
            position = line.end;
            const auto content = withoutFeed(textOf(text, line));
            if (!content.starts_with(loopback))
                continue;
            if (const auto name = trimmed(content.substr(loopback.size())); !name.empty())
                names.emplace_back(name);
        }
    });
    return names;
}

std::optional<std::vector<std::string_view>> intactHostsBlockNames(std::string_view text)
{
    const auto start = text.find(hostsMarker);
    const bool isOnlyOne = start != std::string_view::npos && text.rfind(hostsMarker) == start;
    if (!isOnlyOne || (start > 0 && text[start - 1] != '\n'))
        return std::nullopt;
    auto line = lineAt(text, start);
    if (withoutFeed(textOf(text, line)) != hostsMarker)
        return std::nullopt;
    std::vector<std::string_view> names;
    for (line = lineAt(text, line.end); line.begin < text.size(); line = lineAt(text, line.end)) {
        if (withoutFeed(textOf(text, line)) == hostsMarkerEnd)
            return names;
        const auto name = nameOfOwnLine(textOf(text, line));
        if (name.empty() || (!names.empty() && name <= names.back()))
            return std::nullopt;
        names.push_back(name);
    }
    return std::nullopt;
}

bool isNameOfMachine(std::string_view name, std::string_view hostName)
{
    return isSameName(name, hostName) || name == "localhost" || name.ends_with(".localhost");
}

} // namespace stillgate
