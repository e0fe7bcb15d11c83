#include "Guard/BlockNames.h"

#include "Blocking/DomainNames.h"
#include "Platform/HostsBlock.h"

#include <algorithm>
#include <iterator>

namespace stillgate::guard
{

namespace
{

constexpr std::string_view linePrefix = "127.0.0.1 ";

bool consume(std::string_view& text, std::string_view expected)
{
    if (!text.starts_with(expected))
        return false;
    text.remove_prefix(expected.size());
    return true;
}

std::string headOfBlock()
{
    return "\n" + std::string{hostsMarker} + "\n";
}

std::string endOfBlock()
{
    return std::string{hostsMarkerEnd} + "\n";
}

std::unexpected<Refusal> invalidLine(std::size_t number)
{
    return refusal(
        Refusal::Kind::invalidArgument, "line " + std::to_string(number) + " of the block isn't as it has to be");
}

} // namespace

Answer<BlockNames> readBlock(std::string_view text)
{
    if (!consume(text, headOfBlock()))
        return refusal(Refusal::Kind::invalidArgument, "the block doesn't begin with its marker");
    BlockNames names;
    std::string_view previous;
    for (std::size_t number = 3; consume(text, linePrefix); ++number) {
        const auto name = text.substr(0, text.find('\n'));
        if (name.size() == text.size() || !isDomainName(name) || name <= previous)
            return invalidLine(number);
        text.remove_prefix(name.size() + 1);
        previous = name;
        names.push_back(name);
    }
    if (text != endOfBlock())
        return refusal(Refusal::Kind::invalidArgument, "the block doesn't end with its marker");
    return names;
}

BlockNames withoutNamesOfMachine(BlockNames names, std::string_view hostName)
{
    std::erase_if(names, [hostName](std::string_view name) { return isNameOfMachine(name, hostName); });
    return names;
}

std::string blockText(const BlockNames& names)
{
    if (names.empty())
        return {};
    std::string text = headOfBlock();
    std::size_t size = text.size() + endOfBlock().size();
    for (const auto name : names)
        size += linePrefix.size() + name.size() + 1;
    text.reserve(size);
    for (const auto name : names)
        text.append(linePrefix).append(name).append("\n");
    return text.append(endOfBlock());
}

BlockNames unionOf(const BlockNames& a, const BlockNames& b)
{
    BlockNames both;
    both.reserve(a.size() + b.size());
    std::ranges::set_union(a, b, std::back_inserter(both));
    return both;
}

bool isSubset(const BlockNames& part, const BlockNames& whole)
{
    return std::ranges::includes(whole, part);
}

UserNames divided(const BlockNames& names, std::vector<std::string> temporaryNames)
{
    std::ranges::sort(temporaryNames);
    UserNames divided;
    std::ranges::set_difference(names, temporaryNames, std::back_inserter(divided.lasting));
    std::ranges::set_intersection(names, temporaryNames, std::back_inserter(divided.temporary));
    return divided;
}

} // namespace stillgate::guard
