#pragma once

#include <string_view>

namespace stillgate
{

/// Whether version `a` is older than `b`, number by number: "1.9.9" is older than "1.10.0".
///
/// Pieces between the dots that aren't whole numbers of 64 bits don't count ("1.x.3" reads as 1, 3), and a missing
/// piece is 0.
[[nodiscard]] bool isVersion(std::string_view a, std::string_view lessThanB);

} // namespace stillgate
