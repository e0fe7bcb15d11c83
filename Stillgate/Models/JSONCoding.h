#pragma once

#include "Models/Date.h"
#include "Models/Record.h"
#include "Models/Result.h"

#include <nlohmann/json.hpp>

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace stillgate
{

/// How a Date stands in JSON.
enum class DateForm {
    iso8601,          ///< RFC 3339 text, on the wire
    secondsSince2001, ///< a number, in the cache
};

namespace json
{

using Input = nlohmann::json;
using Output = nlohmann::ordered_json; // keeps the keys in the order in which they are written
using Outcome = std::expected<void, DecodingFailure>;

std::expected<Input, DecodingFailure> parse(std::string_view text);
Result<std::string> serialize(const Output& value);

Outcome wrongType(std::string_view wanted, const Input& found);
Outcome at(std::string_view pathStep, Outcome outcome);
std::string indexStep(std::size_t index);
std::string keyStep(std::string_view key);

Outcome read(const Input& value, std::string& target, DateForm form);
Outcome read(const Input& value, bool& target, DateForm form);
Outcome read(const Input& value, std::int64_t& target, DateForm form);
Outcome read(const Input& value, double& target, DateForm form);
Outcome read(const Input& value, Date& target, DateForm form);
template <Record T>
Outcome read(const Input& value, T& target, DateForm form);
template <class T>
Outcome read(const Input& value, std::map<std::string, T>& target, DateForm form);

template <class T>
Outcome read(const Input& value, std::vector<T>& target, DateForm form)
{
    if (!value.is_array())
        return wrongType("a list", value);
    target.clear();
    target.reserve(value.size());
    for (const auto& element : value) {
        T decoded{};
        if (auto outcome = json::read(element, decoded, form); !outcome)
            return at(indexStep(target.size()), std::move(outcome));
        target.push_back(std::move(decoded));
    }
    return {};
}

template <class T>
Outcome read(const Input& value, std::map<std::string, T>& target, DateForm form)
{
    if (!value.is_object())
        return wrongType("an object", value);
    target.clear();
    for (const auto& [key, element] : value.items()) {
        if (auto outcome = json::read(element, target[key], form); !outcome)
            return at(keyStep(key), std::move(outcome));
    }
    return {};
}

template <class T>
Outcome readMember(const Input* value, T& target, DateForm form)
{
    if (value == nullptr)
        return std::unexpected{DecodingFailure{"", "required, but missing"}};
    if (value->is_null())
        return std::unexpected{DecodingFailure{"", "required, but null"}};
    return json::read(*value, target, form);
}

template <class T>
Outcome readMember(const Input* value, std::optional<T>& target, DateForm form)
{
    target.reset();
    if (value == nullptr || value->is_null())
        return {};
    return json::read(*value, target.emplace(), form);
}

template <Record T>
Outcome read(const Input& value, T& target, DateForm form)
{
    if (!value.is_object())
        return wrongType("an object", value);
    Outcome outcome;
    const auto readField = [&](const auto& field) {
        const auto found = value.find(field.key);
        outcome = readMember(found == value.end() ? nullptr : &*found, target.*field.member, form);
        if (!outcome)
            outcome = at(std::string{"."} + field.key, std::move(outcome));
        return outcome.has_value();
    };
    std::apply([&](const auto&... field) { (readField(field) && ...); }, T::fields());
    return outcome;
}

Output write(const std::string& value, DateForm form);
Output write(bool value, DateForm form);
Output write(std::int64_t value, DateForm form);
Output write(double value, DateForm form);
Output write(Date value, DateForm form);
template <Record T>
Output write(const T& value, DateForm form);
template <class T>
Output write(const std::map<std::string, T>& value, DateForm form);

template <class T>
Output write(const std::vector<T>& value, DateForm form)
{
    auto list = Output::array();
    for (const auto& element : value)
        list.push_back(json::write(element, form));
    return list;
}

// Keys are appended without the look-up that the library's own insertion makes: they are known to differ.
inline void append(Output& object, std::string key, Output value)
{
    object.get_ref<Output::object_t&>().push_back({std::move(key), std::move(value)});
}

template <class T>
Output write(const std::map<std::string, T>& value, DateForm form)
{
    auto object = Output::object();
    for (const auto& [key, element] : value)
        append(object, key, json::write(element, form));
    return object;
}

template <class T>
void writeMember(Output& object, const char* key, const T& value, DateForm form)
{
    append(object, key, json::write(value, form));
}

template <class T>
void writeMember(Output& object, const char* key, const std::optional<T>& value, DateForm form)
{
    if (value)
        append(object, key, json::write(*value, form));
}

template <Record T>
Output write(const T& value, DateForm form)
{
    auto object = Output::object();
    std::apply(
        [&](const auto&... field) { (writeMember(object, field.key, value.*field.member, form), ...); }, T::fields());
    return object;
}

/// What a path of a failure begins with: the record's name, also for a list of that record.
template <class T>
struct RootName
{
    static constexpr std::string_view value = "value";
};

template <Record T>
struct RootName<T>
{
    static constexpr std::string_view value = T::recordName;
};

template <class T>
struct RootName<std::vector<T>> : RootName<T>
{};

} // namespace json

/// Reads records, and lists and maps of them, from JSON (RFC 8259).
///
/// A required key that is absent or null, and a value of the wrong type anywhere, fail the whole with a message that
/// names the record and the key path. Unknown keys are ignored; whole numbers keep 64 bits.
class JSONDecoder
{
public:
    explicit JSONDecoder(DateForm dates)
        : m_dates(dates)
    {}

    /// Errors: DecodingFailure.
    template <class T>
    [[nodiscard]] Result<T> decode(std::string_view text) const
    {
        T decoded{};
        auto parsed = json::parse(text);
        json::Outcome outcome =
            parsed ? json::read(*parsed, decoded, m_dates) : json::Outcome{std::unexpected{parsed.error()}};
        if (!outcome)
            return failure(json::at(json::RootName<T>::value, std::move(outcome)).error());
        return decoded;
    }

private:
    DateForm m_dates;
};

/// Writes records, and lists and maps of them, as compact JSON: keys in the order of the record's declaration, a key
/// whose value is none left out.
class JSONEncoder
{
public:
    explicit JSONEncoder(DateForm dates)
        : m_dates(dates)
    {}

    /// Errors: EncodingFailure, if a text isn't UTF-8.
    template <class T>
    [[nodiscard]] Result<std::string> encode(const T& value) const
    {
        return json::serialize(json::write(value, m_dates));
    }

private:
    DateForm m_dates;
};

} // namespace stillgate
