#include "DomainGenerator.h"

#include <array>

namespace stillgate
{

std::string DomainGenerator::next()
{
    constexpr std::array<const char*, 6> endings{".com", ".org", ".net", ".de", ".co.uk", ".io"};
    std::string name;
    for (auto letters = 4 + m_random() % 8; letters > 0; --letters)
        name += static_cast<char>('a' + m_random() % 26);
    name += std::to_string(m_count++); // keeps them apart
    return name + endings.at(m_random() % endings.size());
}

std::vector<std::string> DomainGenerator::take(std::size_t count)
{
    std::vector<std::string> domains;
    domains.reserve(count);
    while (domains.size() < count)
        domains.push_back(next());
    return domains;
}

BlockRule customRule(std::string id, std::vector<std::string> domains)
{
    return {
        .id = std::move(id),
        .category = "custom",
        .customName = "Distractions",
        .enabled = true,
        .customDomains = std::move(domains),
        .unblockPolicy = flexibleMode,
    };
}

} // namespace stillgate
