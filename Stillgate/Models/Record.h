#pragma once

#include <string_view>
#include <tuple>

namespace stillgate
{

/// One key of a record: its JSON name and the member that holds its value.
template <class Owner, class Member>
struct Field
{
    const char* key;
    Member Owner::* member;
};

template <class Owner, class Member>
Field(const char*, Member Owner::*) -> Field<Owner, Member>;

/// A JSON object with a fixed set of keys, declared with STILLGATE_RECORD.
template <class T>
concept Record = requires {
    { T::recordName } -> std::convertible_to<std::string_view>;
    T::fields();
};

} // namespace stillgate

// clang-format off
#define STILLGATE_DETAIL_PARENS ()
#define STILLGATE_DETAIL_EXPAND(...) \
    STILLGATE_DETAIL_EXPAND1(STILLGATE_DETAIL_EXPAND1(STILLGATE_DETAIL_EXPAND1(__VA_ARGS__)))
#define STILLGATE_DETAIL_EXPAND1(...) \
    STILLGATE_DETAIL_EXPAND2(STILLGATE_DETAIL_EXPAND2(STILLGATE_DETAIL_EXPAND2(__VA_ARGS__)))
#define STILLGATE_DETAIL_EXPAND2(...) \
    STILLGATE_DETAIL_EXPAND3(STILLGATE_DETAIL_EXPAND3(STILLGATE_DETAIL_EXPAND3(__VA_ARGS__)))
#define STILLGATE_DETAIL_EXPAND3(...) __VA_ARGS__
#define STILLGATE_DETAIL_FIELDS(Type, name, ...) \
    ::stillgate::Field{#name, &Type::name}       \
    __VA_OPT__(, STILLGATE_DETAIL_FIELDS_AGAIN STILLGATE_DETAIL_PARENS (Type, __VA_ARGS__))
#define STILLGATE_DETAIL_FIELDS_AGAIN() STILLGATE_DETAIL_FIELDS

/// Declares, inside a struct, which members stand in its JSON and in which order: STILLGATE_RECORD(Type, members...).
///
/// The JSON key is the member's name, letter for letter. A member of type std::optional is an optional key; every
/// other one is required. Also gives the struct memberwise equality.
#define STILLGATE_RECORD(Type, ...)                                                            \
    static constexpr std::string_view recordName = #Type;                                      \
    static constexpr auto fields()                                                             \
    {                                                                                          \
        return std::tuple{STILLGATE_DETAIL_EXPAND(STILLGATE_DETAIL_FIELDS(Type, __VA_ARGS__))}; \
    }                                                                                          \
    bool operator==(const Type&) const = default
// clang-format on
