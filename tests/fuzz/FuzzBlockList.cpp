#include "Blocking/CategoryDomains.h"
#include "Blocking/DomainNames.h"
#include "Blocking/HostsEntries.h"
#include "FuzzTarget.h"
#include "Platform/HostsBlock.h"
#include "Require.h"

#include <algorithm>

namespace stillgate
{

namespace
{

using Names = std::vector<std::string_view>;

/// A prefix may make a name longer than a domain name can be.
bool isDomainNameOrPrefixed(std::string_view name)
{
    return isDomainName(name) || isDomainName(name.substr(name.find('.') + 1));
}

void requireNamesInOrder(const Names& names)
{
    require(std::ranges::adjacent_find(names, std::greater_equal{}) == names.end(), "names ascend, none comes twice");
    require(std::ranges::all_of(names, isDomainNameOrPrefixed), "every name can stand in a hosts file");
}

void requireNamesOf(const std::vector<std::string>& domains, const Names& names)
{
    for (const auto& domain : domains) {
        const auto name = lowercased(domain);
        if (!isDomainName(name))
            continue;
        require(std::ranges::binary_search(names, name), "a valid domain is among the names");
        require(
            std::ranges::binary_search(names, "www." + name), "a valid domain is among the names with its prefixes");
    }
}

} // namespace

} // namespace stillgate

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace stillgate;

    const auto domains = domainsOfBlockList(textOf(data, size));
    if (!domains)
        return 0;
    const HostNames names{*domains};
    requireNamesInOrder(names.sorted());
    requireNamesOf(*domains, names.sorted());
    const auto block = generateHostsEntries(*domains);
    require(
        std::ranges::equal(hostsBlockNames(block, {}), names.sorted()), "a block reads as the names it was made of");
    require(withoutHostsBlocks(block, {}).empty(), "nothing of a block stays when it goes");
    return 0;
}
