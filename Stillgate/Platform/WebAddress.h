#pragma once

#include <optional>
#include <string>

namespace stillgate
{

/// The http or https address with everything escaped that an address may not hold (RFC 3986); nothing for any other
/// text. THREAT: what opens an address runs whatever program its scheme belongs to.
[[nodiscard]] std::optional<std::string> webAddress(const std::string& text);

/// The host of an address of any scheme: lower case, ASCII (RFC 5890), without the dot of the root. Nothing if there is
/// none, as in a local file or a page of the browser's own.
[[nodiscard]] std::optional<std::string> hostOfAddress(const std::string& text);

/// The page itself, where an address is a browser's for another view of it: about:reader?url=…, view-source:…, blob:….
[[nodiscard]] std::string addressOfPage(const std::string& address);

} // namespace stillgate
