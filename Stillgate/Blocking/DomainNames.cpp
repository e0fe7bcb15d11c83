#include "Blocking/DomainNames.h"

#include <algorithm>

namespace stillgate
{

namespace
{

constexpr std::size_t longestDomainName = 253;

bool isLabelCharacter(char character)
{
    return (character >= 'a' && character <= 'z') || (character >= '0' && character <= '9') || character == '-';
}

bool isLabel(std::string_view label)
{
    return !label.empty() && !label.starts_with('-') && !label.ends_with('-') &&
        std::ranges::all_of(label, isLabelCharacter);
}

} // namespace

std::string lowercased(std::string_view text)
{
    std::string result{text};
    for (char& character : result) {
        if (character >= 'A' && character <= 'Z')
            character = static_cast<char>(character - 'A' + 'a');
    }
    return result;
}

bool isDomainName(std::string_view name)
{
    if (name.size() > longestDomainName)
        return false;
    for (;;) {
        const auto dot = name.find('.');
        if (!isLabel(name.substr(0, dot)))
            return false;
        if (dot == std::string_view::npos)
            return true;
        name.remove_prefix(dot + 1);
    }
}

const std::string* domainCovering(const DomainSet& domains, std::string_view host)
{
    for (;;) {
        if (const auto found = domains.find(host); found != domains.end())
            return &*found;
        const auto dot = host.find('.');
        if (dot == std::string_view::npos)
            return nullptr;
        host.remove_prefix(dot + 1);
    }
}

} // namespace stillgate
