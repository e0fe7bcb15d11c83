#include "Message/Records.h"

#include "Message/Header.h"

namespace stillgate::dns
{

namespace
{

/// Behind the name that begins there, whatever a pointer at its end leads to.
std::optional<std::size_t> behindName(View message, std::size_t at)
{
    while (at < message.size()) {
        const auto length = message[at];
        if (length == 0)
            return at + 1;
        if (length >= 0xc0)
            return at + 2 <= message.size() ? std::optional{at + 2} : std::nullopt;
        if (length > DomainName::longestLabel)
            return std::nullopt;
        at += 1 + length;
    }
    return std::nullopt;
}

} // namespace

Records::Records(View message, std::size_t questionEnd)
    : m_message(message)
    , m_at(questionEnd)
    , m_left(number16(message, Header::answerCount))
{}

bool Records::enterNextSection()
{
    while (m_left == 0) {
        if (m_section == Section::additional)
            return false;
        const bool wasAnswer = m_section == Section::answer;
        m_section = wasAnswer ? Section::authority : Section::additional;
        m_left = number16(m_message, wasAnswer ? Header::authorityCount : Header::additionalCount);
    }
    return true;
}

bool Records::next(Record& record)
{
    if (!m_isWellFormed || !enterNextSection())
        return false;
    constexpr std::size_t fixedSize = 10; // type, class, time to live, length of the data
    const auto nameEnd = behindName(m_message, m_at);
    m_isWellFormed = nameEnd && *nameEnd + fixedSize <= m_message.size();
    if (!m_isWellFormed)
        return false;
    const auto dataBegin = *nameEnd + fixedSize;
    const auto end = dataBegin + number16(m_message, *nameEnd + 8);
    m_isWellFormed = end <= m_message.size();
    if (!m_isWellFormed)
        return false;
    record = {.section = m_section,
        .begin = m_at,
        .type = number16(m_message, *nameEnd),
        .recordClass = number16(m_message, *nameEnd + 2),
        .timeToLive = number32(m_message, *nameEnd + 4),
        .timeToLiveAt = *nameEnd + 4,
        .dataBegin = dataBegin,
        .end = end};
    m_at = end;
    --m_left;
    return true;
}

std::optional<Question> Question::of(View message)
{
    if (message.size() < Header::size || number16(message, Header::questionCount) != 1)
        return std::nullopt;
    Question question;
    // A name that uses nothing before it, and so no pointer: there is nothing to point to but the header.
    const auto nameEnd = question.name.read(message, Header::size);
    if (!nameEnd || *nameEnd != Header::size + question.name.wire().size() || *nameEnd + 4 > message.size())
        return std::nullopt;
    question.type = number16(message, *nameEnd);
    question.recordClass = number16(message, *nameEnd + 2);
    question.end = *nameEnd + 4;
    return question;
}

} // namespace stillgate::dns
