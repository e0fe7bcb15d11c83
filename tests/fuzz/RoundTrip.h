#pragma once

#include "Models/JSONCoding.h"
#include "Require.h"

namespace stillgate
{

template <class T>
void cutToSeconds(T&)
{}

inline void cutToSeconds(Date& date)
{
    date = std::chrono::floor<std::chrono::seconds>(date);
}

template <Record T>
void cutToSeconds(T& record);
template <class T>
void cutToSeconds(std::vector<T>& list);
template <class T>
void cutToSeconds(std::map<std::string, T>& values);

template <class T>
void cutToSeconds(std::optional<T>& value)
{
    if (value)
        cutToSeconds(*value);
}

template <class T>
void cutToSeconds(std::map<std::string, T>& values)
{
    for (auto& [key, value] : values)
        cutToSeconds(value);
}

template <class T>
void cutToSeconds(std::vector<T>& list)
{
    for (auto& element : list)
        cutToSeconds(element);
}

template <Record T>
void cutToSeconds(T& record)
{
    std::apply([&](const auto&... field) { (cutToSeconds(record.*field.member), ...); }, T::fields());
}

/// What decodes can be written, and what was written decodes to the same value. On the wire, dates are
/// written in whole seconds.
template <class T>
void requireRoundTrip(std::string_view text, DateForm dates)
{
    auto decoded = JSONDecoder{dates}.decode<T>(text);
    if (!decoded) {
        require(!decoded.error().description().empty(), "a failure can be told in words");
        return;
    }
    const auto written = JSONEncoder{dates}.encode(*decoded);
    require(written.has_value(), "what decodes can be encoded");
    const auto again = JSONDecoder{dates}.decode<T>(*written);
    require(again.has_value(), "what was encoded decodes");
    if (dates == DateForm::iso8601)
        cutToSeconds(*decoded);
    require(*again == *decoded, "what was encoded decodes to the same value");
}

} // namespace stillgate
