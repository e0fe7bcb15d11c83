#pragma once

#include "Message/DomainName.h"

namespace stillgate::dns
{

enum class Section : std::uint8_t { answer, authority, additional };

/// A resource record in its message (RFC 1035, 4.1.3); all places count from the message's first byte.
struct Record
{
    Section section{};
    std::size_t begin = 0; ///< its owner's name
    std::uint16_t type = 0;
    std::uint16_t recordClass = 0;
    std::uint32_t timeToLive = 0; ///< seconds
    std::size_t timeToLiveAt = 0;
    std::size_t dataBegin = 0;
    std::size_t end = 0;
};

/// Goes through the records behind the question.
class Records
{
public:
    /// `questionEnd` is where the question ends; the message has its whole header.
    Records(View message, std::size_t questionEnd);

    /// False at the end, and where the message is cut off or malformed.
    bool next(Record& record);

    /// Whether next() has found every record that the header counts.
    [[nodiscard]] bool areWhole() const { return m_isWellFormed && m_left == 0; }

    /// Where the last record that next() gave ends.
    [[nodiscard]] std::size_t end() const { return m_at; }

private:
    bool enterNextSection();

    View m_message;
    std::size_t m_at;
    Section m_section = Section::answer;
    std::size_t m_left; ///< in this section
    bool m_isWellFormed = true;
};

/// The question of a message: a name, a type and a class.
struct Question
{
    DomainName name;
    std::uint16_t type = 0;
    std::uint16_t recordClass = 0;
    std::size_t end = 0; ///< behind it

    /// The one question of a message, its name uncompressed; nothing if there is another number of them.
    [[nodiscard]] static std::optional<Question> of(View message);

    [[nodiscard]] bool isSame(const Question& other) const
    {
        return type == other.type && recordClass == other.recordClass && name == other.name;
    }
};

} // namespace stillgate::dns
