#pragma once

#include <string>
#include <string_view>

namespace stillgate
{

/// ASCII letters in lower case. Names on the wire are ASCII (RFC 1035, RFC 5890).
[[nodiscard]] std::string lowercased(std::string_view text);

/// Whether a name can stand in a hosts file: lower-case letters, digits and inner hyphens, in labels with dots
/// between them, at most 253 bytes.
[[nodiscard]] bool isDomainName(std::string_view name);

} // namespace stillgate
