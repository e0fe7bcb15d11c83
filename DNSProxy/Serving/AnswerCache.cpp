#include "Serving/AnswerCache.h"

namespace stillgate::dns
{

namespace
{

std::uint32_t secondsBetween(AnswerCache::Time begin, AnswerCache::Time end)
{
    return static_cast<std::uint32_t>(std::chrono::duration_cast<std::chrono::seconds>(end - begin).count());
}

} // namespace

bool AnswerCache::append(Bytes& out, const Query& query, std::uint64_t key, Time now)
{
    const auto found = m_byKey.find(key);
    if (found == m_byKey.end())
        return false;
    const auto entry = found->second;
    const auto age = secondsBetween(entry->stored, now);
    if (age >= entry->answer.lifetime()) {
        remove(entry);
        return false;
    }
    const auto question = Question::of(entry->answer.message());
    if (entry->variant != query.variant() || !question || !question->isSame(query.question))
        return false;
    m_entries.splice(m_entries.begin(), m_entries, entry);
    entry->answer.appendTo(out, query, age);
    return true;
}

void AnswerCache::store(const Query& query, std::uint64_t key, SharedAnswer answer, Time now)
{
    if (answer.lifetime() == 0)
        return;
    if (const auto found = m_byKey.find(key); found != m_byKey.end())
        remove(found->second);
    m_entries.push_front({.key = key, .variant = query.variant(), .answer = std::move(answer), .stored = now});
    m_byKey.emplace(key, m_entries.begin());
    m_bytes += footprint(m_entries.front());
    while (m_entries.size() > mostAnswers || m_bytes > mostBytes)
        remove(std::prev(m_entries.end()));
}

void AnswerCache::clear()
{
    m_byKey.clear();
    m_entries.clear();
    m_bytes = 0;
}

/// With what the list, the table and the heap need beside it.
std::size_t AnswerCache::footprint(const Entry& entry)
{
    constexpr std::size_t linksAndHeads = 128;
    return sizeof(Entry) + linksAndHeads + entry.answer.footprint();
}

void AnswerCache::remove(Entries::iterator entry)
{
    m_bytes -= footprint(*entry);
    m_byKey.erase(entry->key);
    m_entries.erase(entry);
}

} // namespace stillgate::dns
