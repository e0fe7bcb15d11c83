#include "Models/JSONCoding.h"
#include "tests/support/AllRecords.h"

#include <gtest/gtest.h>

namespace stillgate
{

namespace
{

using json::Input;

template <class T>
constexpr bool isOptional = false;
template <class T>
constexpr bool isOptional<std::optional<T>> = true;

constexpr auto tooLarge = std::numeric_limits<std::uint64_t>::max();

template <class T>
struct Values;

/// How the values of a type look: a sample with every key there is, and whether another value of JSON is one too.
template <class T, Input::value_t... kinds>
struct PlainValues
{
    static bool accept(const Input& value) { return ((value.type() == kinds) || ...); }
};

template <>
struct Values<std::string> : PlainValues<std::string, Input::value_t::string>
{
    static std::string sample() { return "text"; }
};

template <>
struct Values<bool> : PlainValues<bool, Input::value_t::boolean>
{
    static bool sample() { return true; }
};

template <>
struct Values<std::int64_t>
{
    static std::int64_t sample() { return 7; }

    static bool accept(const Input& value)
    {
        return value.is_number_integer() && !(value.is_number_unsigned() && value.get<std::uint64_t>() == tooLarge);
    }
};

template <>
struct Values<double>
{
    static double sample() { return 1.5; }

    static bool accept(const Input& value) { return value.is_number(); }
};

template <>
struct Values<Date>
{
    static Date sample() { return Date{}; }

    static bool accept(const Input&) { return false; } // none of the replacements is a date
};

template <class T>
struct Values<std::optional<T>> : Values<T>
{};

template <class T>
struct Values<std::vector<T>>
{
    static std::vector<T> sample() { return {Values<T>::sample()}; }

    static bool accept(const Input& value) { return value.is_array() && value.empty(); }

    template <class Check>
    static void visit(Input& list, const Check& check)
    {
        check.template operator()<T>(list[0]);
    }
};

template <class T>
struct Values<std::map<std::string, T>>
{
    static std::map<std::string, T> sample() { return {{"key", Values<T>::sample()}}; }

    static bool accept(const Input& value) { return value.is_object() && value.empty(); }

    template <class Check>
    static void visit(Input& object, const Check& check)
    {
        check.template operator()<T>(object["key"]);
    }
};

template <Record T>
struct Values<T>
{
    static constexpr bool ignoresUnknownKeys = true;

    static T sample()
    {
        T record;
        const auto fill = [&]<class Member>(Member T::* member) { record.*member = Values<Member>::sample(); };
        std::apply([&](const auto&... field) { (fill(field.member), ...); }, T::fields());
        return record;
    }

    static bool accept(const Input& value)
    {
        const auto isFree = []<class Member>(Member T::*) { return isOptional<Member>; };
        return value.is_object() &&
            std::apply([&](const auto&... field) { return (isFree(field.member) && ...); }, T::fields());
    }

    template <class Check>
    static void visit(Input& object, const Check& check)
    {
        const auto visitField = [&]<class Member>(
                                    const char* key, Member T::*) { check.template operator()<Member>(object[key]); };
        std::apply([&](const auto&... field) { (visitField(field.key, field.member), ...); }, T::fields());
    }
};

const Input replacements[] = {nullptr, true, 7, -1, 1.5, 1e300, tooLarge, "text", "", "2026-13-45T99:00:00Z",
    Input::array(), Input::object(), Input::array({nullptr}), {{"unheardOf", nullptr}}};

/// A complete document of a record, in which one value after the other is replaced by each of those.
template <Record Root>
class Mutations
{
public:
    void run() { mutate<Root>(m_document); }

private:
    [[nodiscard]] bool decodes() const
    {
        const auto decoded = JSONDecoder{DateForm::iso8601}.decode<Root>(m_document.dump());
        EXPECT_TRUE(decoded || !decoded.error().description().empty());
        return decoded.has_value();
    }

    template <class T>
    void mutate(Input& value)
    {
        const auto kept = value;
        for (const auto& replacement : replacements) {
            value = replacement;
            const bool expected = replacement.is_null() ? isOptional<T> : Values<T>::accept(replacement);
            EXPECT_EQ(decodes(), expected) << m_document;
        }
        value = kept;
        if constexpr (requires { Values<T>::ignoresUnknownKeys; }) {
            value["unheardOf"] = 1;
            EXPECT_TRUE(decodes()) << m_document;
            value = kept;
        }
        if constexpr (requires { Values<T>::visit(value, [] {}); })
            Values<T>::visit(value, [this]<class Inner>(Input& inner) { this->mutate<Inner>(inner); });
    }

    Input m_document = Input::parse(*JSONEncoder{DateForm::iso8601}.encode(Values<Root>::sample()));
};

template <class... Types>
void mutateAll(RecordList<Types...>)
{
    (Mutations<Types>{}.run(), ...);
}

} // namespace

TEST(RecordMutation, valueOfAnotherTypeIsRefusedWhereverItStands)
{
    mutateAll(AllRecords{});
}

} // namespace stillgate
