#pragma once

#include <optional>
#include <string>

namespace stillgate
{

/// The http or https address with everything escaped that an address may not hold (RFC 3986); nothing for any other
/// text. THREAT: what opens an address runs whatever program its scheme belongs to.
[[nodiscard]] std::optional<std::string> webAddress(const std::string& text);

} // namespace stillgate
