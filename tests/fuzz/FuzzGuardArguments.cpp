#include "Blocking/DomainNames.h"
#include "FuzzTarget.h"
#include "Guard/BlockNames.h"
#include "Platform/HostsBlock.h"
#include "Require.h"

#include <algorithm>

namespace stillgate
{

namespace
{

constexpr std::string_view hostName = "Laptop";

void requireNames(const guard::BlockNames& names)
{
    require(std::ranges::adjacent_find(names, std::ranges::greater_equal{}) == names.end(), "ascending, each once");
    for (const auto name : names) {
        require(isDomainName(name), "a name is one that can stand in a hosts file");
        require(name != "laptop" && name != "localhost", "the machine's stay its own");
    }
}

/// What is written for an accepted block: nothing but lines of ours, which a later removal takes away again.
void requireBlock(const guard::BlockNames& names)
{
    const std::string others = "127.0.0.1 localhost\n10.0.0.1 nas";
    const auto block = guard::blockText(names);
    require(withoutHostsBlocks(others + block, hostName) == others, "it goes without a trace");
    // A block that has lost its end ends ahead of a name below the machine's own.
    const bool isOfMachine = block.contains(" laptop.");
    require(isOfMachine || withoutHostsBlocks(others + block.substr(0, block.rfind("# End")), hostName) == others,
        "even if its end is lost");
    require(std::ranges::equal(hostsBlockNames(block, hostName), names), "it holds the names and nothing else");
}

} // namespace

} // namespace stillgate

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace stillgate;

    const auto text = textOf(data, size);
    auto read = guard::readBlock(text);
    if (!read)
        return 0;
    const auto names = guard::withoutNamesOfMachine(std::move(*read), hostName);
    requireNames(names);
    requireBlock(names);
    const auto again = guard::blockText(names);
    require(names.empty() || guard::readBlock(again) == names, "what is stored is read again");
    require(again.size() <= text.size(), "nothing comes from nowhere");
    return 0;
}
