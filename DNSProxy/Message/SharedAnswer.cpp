#include "Message/SharedAnswer.h"

#include "Message/Answers.h"

#include <algorithm>

namespace stillgate::dns
{

namespace
{

constexpr std::uint32_t longestLifetime = 3600; // seconds

/// What stays below this can be sent with an OPT record of our own.
constexpr std::size_t largestShared = largestMessage - ednsSize;

/// One with its highest bit set means none (RFC 2181, 8).
std::uint32_t secondsOf(std::uint32_t timeToLive)
{
    return (timeToLive & 0x8000'0000U) != 0 ? 0 : timeToLive;
}

/// The last number of a zone's SOA record.
std::uint32_t minimumOf(View answer, const Record& soa)
{
    return soa.end - soa.dataBegin < 4 ? 0 : number32(answer, soa.end - 4);
}

} // namespace

std::optional<SharedAnswer> SharedAnswer::from(View answer)
{
    const auto question = Question::of(answer);
    SharedAnswer shared;
    const bool isCut = (number16(answer, Header::flags) & flag::truncated) != 0;
    if (isCut || !question || !shared.readRecords(answer, question->end))
        return std::nullopt;
    const auto flags = number16(shared.m_message, Header::flags);
    put16(shared.m_message, Header::flags, flags & ~flag::authoritative); // who remembers isn't the authority
    return shared;
}

/// An OPT record is one hop's, and has to be the last one: nothing behind it moves when it goes.
bool SharedAnswer::readRecords(View answer, std::size_t questionEnd)
{
    Records records{answer, questionEnd};
    std::optional<Record> opt;
    bool saysNothing = number16(answer, Header::answerCount) == 0;
    bool hasZone = false;
    m_lifetime = longestLifetime;
    for (Record record; records.next(record);) {
        if (opt || record.type == type::tsig)
            return false;
        if (record.type == type::opt) {
            opt = record;
            continue;
        }
        m_timesToLive.push_back(static_cast<std::uint16_t>(record.timeToLiveAt));
        m_lifetime = std::min(m_lifetime, secondsOf(record.timeToLive));
        if (record.type == type::soa && record.section == Section::authority) {
            hasZone = true;
            m_lifetime = std::min(m_lifetime, minimumOf(answer, record));
        }
    }
    const bool hasExtendedCode = opt && (opt->timeToLive >> 24U) != 0;
    if (!records.areWhole() || hasExtendedCode)
        return false;
    const auto code = static_cast<ResponseCode>(number16(answer, Header::flags) & flag::responseCode);
    saysNothing = saysNothing || code == ResponseCode::nameError;
    const bool isFailure = code != ResponseCode::noError && code != ResponseCode::nameError;
    if (isFailure || (saysNothing && !hasZone))
        m_lifetime = 0;
    const auto size = opt ? opt->begin : records.end();
    if (size > largestShared)
        return false;
    m_message.assign(answer.begin(), answer.begin() + static_cast<std::ptrdiff_t>(size));
    const auto additional = number16(answer, Header::additionalCount);
    put16(m_message, Header::additionalCount, static_cast<std::uint16_t>(additional - (opt ? 1 : 0)));
    return true;
}

void SharedAnswer::appendTo(Bytes& out, const Query& query, std::uint32_t age) const
{
    const auto begin = out.size();
    append(out, m_message);
    const auto message = std::span{out}.subspan(begin);
    put16(message, 0, query.id);
    // In the asker's own letters, which it may compare.
    const auto question = query.message.subspan(Header::size, query.question.end - Header::size);
    std::ranges::copy(question, message.begin() + Header::size);
    for (const auto at : m_timesToLive) {
        const auto seconds = secondsOf(number32(message, at));
        put32(message, at, seconds - std::min(seconds, age));
    }
    if (query.edns)
        put16(message, Header::additionalCount, number16(message, Header::additionalCount) + 1);
    appendEDNS(out, query);
}

} // namespace stillgate::dns
