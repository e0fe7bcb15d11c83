#pragma once

#include "HTTP/Message.h"
#include "Models/JSONCoding.h"

#include <string_view>

namespace stillgate::server
{

/// The body of every failure of the API.
[[nodiscard]] Response errorAnswer(int status, std::string_view reason);

/// What an operation answers that has nothing to tell: a map from text to boolean.
[[nodiscard]] Response acknowledgement();

/// A record, or a list or map of them.
template <class T>
[[nodiscard]] Response jsonAnswer(const T& value, int status = 200)
{
    const auto text = JSONEncoder{DateForm::iso8601}.encode(value);
    if (!text)
        return errorAnswer(500, text.error().description());
    return {.status = status, .contentType = "application/json", .body = *text, .headers = {}};
}

} // namespace stillgate::server
