#include "Models/JSONCoding.h"

#include <cmath>
#include <limits>

namespace stillgate::json
{

namespace
{

// Deeper input than any record of ours is hostile: the parser would spend some hundred bytes a bracket on it.
constexpr int deepestNesting = 512;

bool isTooDeep(std::string_view text)
{
    int depth = 0;
    bool inString = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char character = text[i];
        if (inString && character == '\\')
            ++i;
        else if (character == '"')
            inString = !inString;
        else if (!inString && (character == '[' || character == '{') && ++depth > deepestNesting)
            return true;
        else if (!inString && (character == ']' || character == '}'))
            --depth;
    }
    return false;
}

Outcome problem(std::string text)
{
    return std::unexpected{DecodingFailure{"", std::move(text)}};
}

Outcome readISO8601(const Input& value, Date& target)
{
    if (!value.is_string())
        return wrongType("a date as text", value);
    const auto& text = value.get_ref<const std::string&>();
    const auto date = dateFromISO8601(text);
    if (!date)
        return problem("Cannot parse date: " + text);
    target = *date;
    return {};
}

Outcome readSecondsSince2001(const Input& value, Date& target)
{
    if (!value.is_number())
        return wrongType("a date as a number", value);
    const auto date = dateFromSecondsSince2001(value.get<double>());
    if (!date)
        return problem("date out of range");
    target = *date;
    return {};
}

} // namespace

std::expected<Input, DecodingFailure> parse(std::string_view text)
{
    if (isTooDeep(text))
        return std::unexpected{DecodingFailure{"", "nested too deeply"}};
    try {
        return Input::parse(text);
    } catch (const Input::parse_error& error) {
        // The library's own message quotes the input, which doesn't belong in a log.
        return std::unexpected{DecodingFailure{"", "not JSON, at byte " + std::to_string(error.byte)}};
    } catch (const Input::exception&) {
        return std::unexpected{DecodingFailure{"", "a number out of range"}};
    }
}

Result<std::string> serialize(const Output& value)
{
    try {
        return value.dump();
    } catch (const Output::exception&) {
        return failure(EncodingFailure{"a text that isn't UTF-8"});
    }
}

Outcome wrongType(std::string_view wanted, const Input& found)
{
    return problem("expected " + std::string{wanted} + ", found " + found.type_name());
}

Outcome at(std::string_view pathStep, Outcome outcome)
{
    outcome.error().path.insert(0, pathStep);
    return outcome;
}

std::string indexStep(std::size_t index)
{
    return "[" + std::to_string(index) + "]";
}

std::string keyStep(std::string_view key)
{
    return "[" + Input(key).dump() + "]";
}

Outcome read(const Input& value, std::string& target, DateForm)
{
    if (!value.is_string())
        return wrongType("text", value);
    target = value.get_ref<const std::string&>();
    return {};
}

Outcome read(const Input& value, bool& target, DateForm)
{
    if (!value.is_boolean())
        return wrongType("true or false", value);
    target = value.get<bool>();
    return {};
}

Outcome read(const Input& value, std::int64_t& target, DateForm)
{
    if (!value.is_number_integer())
        return wrongType("a whole number", value);
    const bool tooLarge = value.is_number_unsigned() &&
        value.get<std::uint64_t>() > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    if (tooLarge)
        return problem("a whole number of more than 64 bits");
    target = value.get<std::int64_t>();
    return {};
}

Outcome read(const Input& value, double& target, DateForm)
{
    if (!value.is_number())
        return wrongType("a number", value);
    target = value.get<double>();
    return {};
}

Outcome read(const Input& value, Date& target, DateForm form)
{
    return form == DateForm::iso8601 ? readISO8601(value, target) : readSecondsSince2001(value, target);
}

Output write(const std::string& value, DateForm)
{
    return value;
}

Output write(bool value, DateForm)
{
    return value;
}

Output write(std::int64_t value, DateForm)
{
    return value;
}

Output write(double value, DateForm)
{
    return value;
}

Output write(Date value, DateForm form)
{
    if (form == DateForm::iso8601)
        return iso8601FromDate(value);
    return secondsSince2001(value);
}

} // namespace stillgate::json
