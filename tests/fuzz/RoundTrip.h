#pragma once

#include "Models/JSONCoding.h"
#include "Require.h"

namespace stillgate
{

/// What decodes can be written, and what was written decodes to the same value. On the wire, dates are written in
/// whole seconds: there it is what was written that stays the same.
template <class T>
void requireRoundTrip(std::string_view text, DateForm dates)
{
    const auto decoded = JSONDecoder{dates}.decode<T>(text);
    if (!decoded) {
        require(!decoded.error().description().empty(), "a failure can be told in words");
        return;
    }
    const auto written = JSONEncoder{dates}.encode(*decoded);
    require(written.has_value(), "what decodes can be encoded");
    const auto again = JSONDecoder{dates}.decode<T>(*written);
    require(again.has_value(), "what was encoded decodes");
    if (dates == DateForm::iso8601)
        require(JSONEncoder{dates}.encode(*again) == *written, "what was encoded is encoded alike");
    else
        require(*again == *decoded, "what was encoded decodes to the same value");
}

} // namespace stillgate
