#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace stillgate
{

/// The names that a list of domains stands for in the hosts file.
///
/// Each valid domain, and each site that belongs to it, in seven forms: bare and with six prefixes ("www.", "m.", ...).
/// Domains are taken without regard to case and surrounding white space; invalid ones are left out.
class HostNames
{
public:
    explicit HostNames(const std::vector<std::string>& domains);

    /// Ascending by bytes, no name twice. The views live as long as this object.
    [[nodiscard]] const std::vector<std::string_view>& sorted() const { return m_sorted; }

private:
    std::string m_bytes; ///< all names, one behind the other
    std::vector<std::string_view> m_sorted;
};

/// The block of the hosts file for these domains (HostsBlock.h): with no valid domain, its two marker lines.
[[nodiscard]] std::string generateHostsEntries(const std::vector<std::string>& domains);

} // namespace stillgate
