#pragma once

#include "Message/Query.h"

namespace stillgate::dns
{

/// An upstream's answer without what is only its asker's: good for everybody who asks the same, for a time.
class SharedAnswer
{
public:
    /// Nothing if there is no telling whose the answer is, it isn't whole, or there is no room left in it.
    [[nodiscard]] static std::optional<SharedAnswer> from(View answer);

    /// For how many seconds it holds: by the shortest of its records' times to live (RFC 1035, 3.2.1), and where it
    /// says that there is nothing, by what the zone allows for that (RFC 2308, 5). An hour at most; 0 for a failure.
    [[nodiscard]] std::uint32_t lifetime() const { return m_lifetime; }

    /// As the answer to this query, of the same question, `age` seconds after it came.
    void appendTo(Bytes& out, const Query& query, std::uint32_t age) const;

    [[nodiscard]] const Bytes& message() const { return m_message; }

    /// Bytes that it takes.
    [[nodiscard]] std::size_t footprint() const
    {
        return m_message.capacity() + m_timesToLive.capacity() * sizeof(m_timesToLive.front());
    }

private:
    bool readRecords(View answer, std::size_t questionEnd);

    Bytes m_message;                          ///< without an OPT record
    std::vector<std::uint16_t> m_timesToLive; ///< where they stand
    std::uint32_t m_lifetime = 0;
};

} // namespace stillgate::dns
