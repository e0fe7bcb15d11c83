#pragma once

#include "Names/DomainSet.h"
#include "Serving/AnswerCache.h"
#include "Serving/Status.h"
#include "Upstream/Asker.h"

#include <functional>

namespace stillgate::dns
{

/// Decides what becomes of a query: answered as blocked, from the cache or by an upstream. One for all listeners.
class QueryHandler final : public ForwardedQueries
{
public:
    /// Takes a query that an upstream has to answer. The number is the same for the same question and variant.
    using Forward = std::function<void(const Query&, std::uint64_t, const Asker&)>;

    /// Whether there is an upstream is up to whoever keeps the status.
    QueryHandler(Status& status, Forward forward);

    /// From now on these names are blocked. What is under way is held to them as well.
    void setBlocked(std::unique_ptr<const DomainSet> blocked);

    /// What was answered by other upstreams is forgotten.
    void forgetAnswers() { m_cache.clear(); }

    /// Answers by the asker's sink, now or later. False if there will be no answer.
    bool take(View message, const Asker& asker);

    void takeAnswer(View answer, std::span<const WaitingAsker> askers, bool isCurrent) override;
    void takeFailure(std::span<const WaitingAsker> askers) override;

private:
    void answer(const Query& query, const Asker& asker);
    void answerChaos(const Query& query, const Asker& asker);
    void answerFromElsewhere(const Query& query, const Asker& asker);
    [[nodiscard]] bool isBlockedNow(View answer, const Question& question) const;
    void appendOwn(View answer, const Query& query);
    [[nodiscard]] std::uint64_t keyOf(const Query& query) const;
    void sendScratch(const Query& query, const Asker& asker);

    template <class Append>
    void answerAll(std::span<const WaitingAsker> askers, Append append);

    Status& m_status;
    Forward m_forward;
    NameKey m_key = NameKey::random();
    std::unique_ptr<const DomainSet> m_blocked;
    AnswerCache m_cache;
    Bytes m_scratch; ///< the answer that is being made
};

} // namespace stillgate::dns
