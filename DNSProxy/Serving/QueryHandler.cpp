#include "Serving/QueryHandler.h"

#include "Message/Answers.h"
#include "Names/Chains.h"

#include <algorithm>
#include <array>

namespace stillgate::dns
{

namespace
{

/// A zone as a whole is none of this program's business, and its answers are many messages.
bool isTransfer(const Question& question)
{
    return question.type == type::axfr || question.type == type::ixfr;
}

} // namespace

QueryHandler::QueryHandler(Status& status, Forward forward)
    : m_status(status)
    , m_forward(std::move(forward))
    , m_blocked(std::make_unique<DomainSet>(m_key, 0))
{}

void QueryHandler::setBlocked(std::unique_ptr<const DomainSet> blocked)
{
    m_blocked = std::move(blocked);
    m_status.names = m_blocked->size();
    m_cache.clear();
}

bool QueryHandler::take(View message, const Asker& asker)
{
    ++m_status.counts.queries;
    const auto query = Query::parse(message);
    if (query) {
        answer(*query, asker);
        return true;
    }
    if (!query.error())
        return false;
    m_scratch.clear();
    appendFault(m_scratch, message, *query.error());
    asker.sink->send(m_scratch, asker.address);
    return true;
}

void QueryHandler::answer(const Query& query, const Asker& asker)
{
    m_scratch.clear();
    const auto& question = query.question;
    if (query.edns && query.edns->version > 0) {
        appendEmpty(m_scratch, query, ResponseCode::badVersion);
    } else if (question.recordClass == recordClass::chaos) {
        answerChaos(query, asker);
    } else if (const auto part = m_blocked->blockedPart(question.name)) {
        ++m_status.counts.blocked;
        appendBlocked(m_scratch, query, *part);
    } else if (isTransfer(question)) {
        appendEmpty(m_scratch, query, ResponseCode::refused);
    } else {
        answerFromElsewhere(query, asker);
        return;
    }
    sendScratch(query, asker);
}

/// To nobody but this machine's own users.
void QueryHandler::answerChaos(const Query& query, const Asker& asker)
{
    const auto texts = asker.address.address().is_loopback() ? m_status.answerTo(query.question.name) : std::nullopt;
    const bool isText = query.question.type == type::txt || query.question.type == type::any;
    if (!texts)
        appendEmpty(m_scratch, query, ResponseCode::refused);
    else if (isText)
        appendTexts(m_scratch, query, *texts);
    else
        appendEmpty(m_scratch, query, ResponseCode::noError);
}

void QueryHandler::answerFromElsewhere(const Query& query, const Asker& asker)
{
    const auto key = keyOf(query);
    if (query.isShareable() && m_cache.append(m_scratch, query, key, std::chrono::steady_clock::now())) {
        ++m_status.counts.cached;
        sendScratch(query, asker);
    } else if (!m_status.hasUpstream) {
        ++m_status.counts.failed;
        appendEmpty(m_scratch, query, ResponseCode::serverFailure);
        sendScratch(query, asker);
    } else {
        ++m_status.counts.forwarded;
        m_forward(query, key, asker);
    }
}

void QueryHandler::takeAnswer(View answer, std::span<const WaitingAsker> askers, bool isCurrent)
{
    const auto first = Query::parse(askers.front().query).value();
    if (isBlockedNow(answer, first.question)) {
        m_status.counts.blocked += askers.size();
        answerAll(askers, [this](const Query& query) {
            appendBlocked(m_scratch, query, m_blocked->blockedPart(query.question.name).value_or(0));
        });
        return;
    }
    auto shared = first.isShareable() ? SharedAnswer::from(answer) : std::nullopt;
    answerAll(askers.subspan(1), [&](const Query& query) {
        if (shared)
            shared->appendTo(m_scratch, query, 0);
        else
            appendTruncated(m_scratch, query, answer); // over TCP everybody gets an answer of their own
    });
    answerAll(askers.first(1), [&](const Query& query) { appendOwn(answer, query); });
    if (shared && isCurrent)
        m_cache.store(first, keyOf(first), std::move(*shared), std::chrono::steady_clock::now());
}

void QueryHandler::takeFailure(std::span<const WaitingAsker> askers)
{
    m_status.counts.failed += askers.size();
    answerAll(askers, [this](const Query& query) { appendEmpty(m_scratch, query, ResponseCode::serverFailure); });
}

template <class Append>
void QueryHandler::answerAll(std::span<const WaitingAsker> askers, Append append)
{
    for (const auto& [asker, bytes] : askers) {
        const auto query = Query::parse(bytes).value(); // it could be read when it came
        m_scratch.clear();
        append(query);
        sendScratch(query, asker);
    }
}

/// By the names of now: they may be others than when the query came.
bool QueryHandler::isBlockedNow(View answer, const Question& question) const
{
    return m_blocked->blockedPart(question.name) || leadsIntoBlocked(answer, question.end, *m_blocked);
}

/// The upstream's answer, but for the ID, in the asker's own letters.
void QueryHandler::appendOwn(View answer, const Query& query)
{
    append(m_scratch, answer);
    put16(m_scratch, 0, query.id);
    const auto question = query.message.subspan(Header::size, query.question.end - Header::size);
    std::ranges::copy(question, m_scratch.begin() + Header::size);
}

/// Of the question and what changes its answer.
std::uint64_t QueryHandler::keyOf(const Query& query) const
{
    const auto& question = query.question;
    const auto name = question.name.wire();
    std::array<std::uint8_t, DomainName::longestName + 5> bytes{};
    std::ranges::copy(name, bytes.begin());
    put16(bytes, name.size(), question.type);
    put16(bytes, name.size() + 2, question.recordClass);
    bytes.at(name.size() + 4) = query.variant();
    return m_key.hash(View{bytes}.first(name.size() + 5));
}

/// No larger than the asker can take.
void QueryHandler::sendScratch(const Query& query, const Asker& asker)
{
    if (!asker.isStream && m_scratch.size() > query.largestAnswer()) {
        Bytes whole;
        whole.swap(m_scratch);
        appendTruncated(m_scratch, query, whole);
    }
    asker.sink->send(m_scratch, asker.address);
}

} // namespace stillgate::dns
