#pragma once

#include <boost/unordered/unordered_flat_set.hpp>
#include <string>
#include <string_view>

namespace stillgate
{

/// ASCII letters in lower case. Names on the wire are ASCII (RFC 1035, RFC 5890).
[[nodiscard]] std::string lowercased(std::string_view text);

/// Whether a name can stand in a hosts file: lower-case letters, digits and inner hyphens, in labels with dots
/// between them, at most 253 bytes.
[[nodiscard]] bool isDomainName(std::string_view name);

/// Looked up by any kind of text, without a copy of it.
struct TextHash
{
    using is_transparent = void;
    using is_avalanching = void; // every bit of the hash is as good as another

    std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>{}(text); }
};

/// Domains in lower case. A domain that isn't there, as most labels of a host aren't, costs one look into memory.
using DomainSet = boost::unordered_flat_set<std::string, TextHash, std::equal_to<>>;

/// The domain that the host, in lower case, is or lies below; null if none does. A look-up for each of its labels,
/// however many domains there are.
[[nodiscard]] const std::string* domainCovering(const DomainSet& domains, std::string_view host);

} // namespace stillgate
