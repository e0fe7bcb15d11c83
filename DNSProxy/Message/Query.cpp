#include "Message/Query.h"

#include <algorithm>

namespace stillgate::dns
{

namespace
{

constexpr std::size_t plainAnswer = 512; // RFC 1035, 4.2.1

namespace option
{

constexpr std::uint16_t cookie = 10;    // RFC 7873
constexpr std::uint16_t keepAlive = 11; // RFC 7828
constexpr std::uint16_t padding = 12;   // RFC 7830

} // namespace option

/// Nothing if the options don't fill the record to the byte.
std::optional<bool> hasOwnOptions(View options)
{
    bool isOwn = false;
    while (!options.empty()) {
        if (options.size() < 4)
            return std::nullopt;
        const auto code = number16(options, 0);
        const std::size_t size = 4 + number16(options, 2);
        if (size > options.size())
            return std::nullopt;
        isOwn = isOwn || (code != option::cookie && code != option::keepAlive && code != option::padding);
        options = options.subspan(size);
    }
    return isOwn;
}

/// The record's class and time to live have meanings of their own (RFC 6891, 6.1.2).
std::optional<EDNS> ednsFrom(View message, const Record& record)
{
    const auto isOwn = hasOwnOptions(message.subspan(record.dataBegin, record.end - record.dataBegin));
    if (record.section != Section::additional || message[record.begin] != 0 || !isOwn)
        return std::nullopt;
    return EDNS{.largestAnswer = record.recordClass,
        .version = static_cast<std::uint8_t>(record.timeToLive >> 16U),
        .wantsDNSSEC = (record.timeToLive & 0x8000U) != 0,
        .hasOwnOptions = *isOwn};
}

/// False if the records behind the question aren't those of a query.
bool readRecords(Query& query)
{
    Records records{query.message, query.question.end};
    for (Record record; records.next(record);) {
        query.isSigned = query.isSigned || record.type == type::tsig;
        if (record.type != type::opt)
            continue;
        const bool isSecond = query.edns.has_value();
        query.edns = ednsFrom(query.message, record);
        if (isSecond || !query.edns)
            return false;
    }
    return records.areWhole() && records.end() == query.message.size();
}

} // namespace

std::expected<Query, Query::Fault> Query::parse(View message)
{
    if (message.size() < Header::size)
        return std::unexpected<Fault>{std::nullopt};
    Query query{.message = message,
        .question = {},
        .id = number16(message, 0),
        .flags = number16(message, Header::flags),
        .edns = {}};
    if ((query.flags & flag::response) != 0)
        return std::unexpected<Fault>{std::nullopt};
    if ((query.flags & flag::opcode) != 0)
        return std::unexpected<Fault>{ResponseCode::notImplemented};
    auto question = Question::of(message);
    if (!question)
        return std::unexpected<Fault>{ResponseCode::formatError};
    query.question = *question;
    if (!readRecords(query))
        return std::unexpected<Fault>{ResponseCode::formatError};
    return query;
}

Bytes Query::withoutOptions() const
{
    Bytes bytes{message.begin(), message.begin() + static_cast<std::ptrdiff_t>(question.end)};
    put16(bytes, Header::answerCount, 0);
    put16(bytes, Header::authorityCount, 0);
    put16(bytes, Header::additionalCount, edns ? 1 : 0);
    if (!edns)
        return bytes;
    bytes.push_back(0);
    append16(bytes, type::opt);
    append16(bytes, edns->largestAnswer);
    append16(bytes, edns->version);
    append16(bytes, edns->wantsDNSSEC ? 0x8000 : 0);
    append16(bytes, 0);
    return bytes;
}

std::size_t Query::largestAnswer() const
{
    return edns ? std::max<std::size_t>(edns->largestAnswer, plainAnswer) : plainAnswer;
}

std::uint8_t Query::variant() const
{
    const auto bit = [](bool isSet, unsigned place) { return isSet ? 1U << place : 0U; };
    return static_cast<std::uint8_t>(bit((flags & flag::recursionDesired) != 0, 0) |
        bit((flags & flag::checkingDisabled) != 0, 1) | bit((flags & flag::authenticData) != 0, 2) |
        bit(edns.has_value(), 3) | bit(edns && edns->wantsDNSSEC, 4));
}

} // namespace stillgate::dns
