#pragma once

#include "Models/JSONCoding.h"

#include <QSqlQuery>
#include <QSqlRecord>
#include <QVariant>

#include <array>
#include <stdexcept>

namespace stillgate::server
{

// How values stand in columns: text and whole numbers as they are; a truth value as 0 or 1; a Date as milliseconds
// since 1970 (BIGINT); lists, maps and records as the text of their JSON; none as NULL.

inline QVariant toColumn(const std::string& value)
{
    return QString::fromStdString(value);
}

inline QVariant toColumn(const char* value)
{
    return QString::fromUtf8(value);
}

inline QVariant toColumn(std::int64_t value)
{
    return QVariant::fromValue<qlonglong>(value);
}

inline QVariant toColumn(bool value)
{
    return value ? 1 : 0;
}

inline QVariant toColumn(Date value)
{
    return toColumn(std::int64_t{std::chrono::floor<std::chrono::milliseconds>(value).time_since_epoch().count()});
}

template <class T>
QVariant toColumn(const T& value)
{
    const auto text = JSONEncoder{DateForm::iso8601}.encode(value);
    if (!text)
        throw std::runtime_error{text.error().description()};
    return toColumn(*text);
}

template <class T>
QVariant toColumn(const std::optional<T>& value)
{
    return value ? toColumn(*value) : QVariant{};
}

inline void fromColumn(const QVariant& column, std::string& value)
{
    value = column.toString().toStdString();
}

inline void fromColumn(const QVariant& column, std::int64_t& value)
{
    value = column.toLongLong();
}

inline void fromColumn(const QVariant& column, bool& value)
{
    value = column.toInt() != 0;
}

inline void fromColumn(const QVariant& column, Date& value)
{
    value = Date{std::chrono::milliseconds{column.toLongLong()}};
}

template <class T>
void fromColumn(const QVariant& column, T& value)
{
    auto decoded = JSONDecoder{DateForm::iso8601}.decode<T>(column.toString().toStdString());
    if (!decoded)
        throw std::runtime_error{"A column holds another kind of value: " + decoded.error().description()};
    value = std::move(*decoded);
}

template <class T>
void fromColumn(const QVariant& column, std::optional<T>& value)
{
    value.reset();
    if (!column.isNull())
        fromColumn(column, value.emplace());
}

/// The column of a record's member: "custom_domains" for "customDomains".
[[nodiscard]] std::string columnName(std::string_view key);

/// Reads rows of one column as that value.
template <class T>
class RowReader
{
public:
    explicit RowReader(const QSqlRecord&) {}

    [[nodiscard]] T read(const QSqlQuery& row) const
    {
        T value{};
        fromColumn(row.value(0), value);
        return value;
    }
};

/// Reads rows as records: each member from the column of its name, and an optional member that has none as nothing.
template <Record T>
class RowReader<T>
{
public:
    explicit RowReader(const QSqlRecord& columns)
    {
        std::apply(
            [&](const auto&... field) {
                std::size_t next = 0;
                ((m_positions[next++] = columns.indexOf(QString::fromStdString(columnName(field.key)))), ...);
            },
            T::fields());
    }

    [[nodiscard]] T read(const QSqlQuery& row) const
    {
        T record{};
        std::apply(
            [&](const auto&... field) {
                std::size_t next = 0;
                (readMember(row, m_positions[next++], field.key, record.*field.member), ...);
            },
            T::fields());
        return record;
    }

private:
    template <class Member>
    static void readMember(const QSqlQuery& row, int position, const char* key, Member& member)
    {
        if (position < 0)
            throw std::logic_error{std::string{"No column for "} + key};
        fromColumn(row.value(position), member);
    }

    template <class Member>
    static void readMember(const QSqlQuery& row, int position, const char*, std::optional<Member>& member)
    {
        if (position >= 0)
            fromColumn(row.value(position), member);
    }

    std::array<int, std::tuple_size_v<decltype(T::fields())>> m_positions{};
};

} // namespace stillgate::server
