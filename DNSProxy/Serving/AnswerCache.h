#pragma once

#include "Message/SharedAnswer.h"

#include <chrono>
#include <list>
#include <unordered_map>

namespace stillgate::dns
{

/// Answers that still hold; the one that nobody has asked for the longest goes first when there are too many.
class AnswerCache
{
public:
    using Time = std::chrono::steady_clock::time_point;

    static constexpr std::size_t mostAnswers = 10'000;
    static constexpr std::size_t mostBytes = std::size_t{4} * 1024 * 1024;

    /// Appends the answer to this query, if there is one. `key` is the same for the same question of the same variant,
    /// and for no other one but by chance.
    [[nodiscard]] bool append(Bytes& out, const Query& query, std::uint64_t key, Time now);

    /// Takes an answer that holds for longer than no time, to the question of this query.
    void store(const Query& query, std::uint64_t key, SharedAnswer answer, Time now);

    void clear();

    [[nodiscard]] std::size_t size() const { return m_byKey.size(); }

private:
    struct Entry
    {
        std::uint64_t key;
        std::uint8_t variant;
        SharedAnswer answer;
        Time stored;
    };

    using Entries = std::list<Entry>;

    [[nodiscard]] static std::size_t footprint(const Entry& entry);
    void remove(Entries::iterator entry);

    Entries m_entries; ///< the one that was asked for last at the front
    std::unordered_map<std::uint64_t, Entries::iterator> m_byKey;
    std::size_t m_bytes = 0;
};

} // namespace stillgate::dns
