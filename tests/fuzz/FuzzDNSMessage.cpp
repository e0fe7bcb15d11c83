#include "FuzzTarget.h"
#include "Message/Answers.h"
#include "Message/SharedAnswer.h"
#include "Names/Chains.h"
#include "Require.h"

namespace stillgate::dns
{

namespace
{

/// Whether it is a response whose records are all there, with nothing behind them.
bool isWholeResponse(View message)
{
    const auto question = Question::of(message);
    if (!question || (number16(message, Header::flags) & flag::response) == 0)
        return false;
    Records records{message, question->end};
    for (Record record; records.next(record);) {
    }
    return records.areWhole() && records.end() == message.size();
}

void requireOwnAnswers(const Query& query)
{
    const auto& name = query.question.name;
    const auto requireWhole = [&](auto append) {
        Bytes out;
        append(out);
        require(isWholeResponse(out), "an answer of our own is well-formed");
        require(number16(out, 0) == query.id, "an answer has the ID of its query");
        require(Question::of(out)->isSame(query.question), "an answer has the question of its query");
        require(out.size() <= 512, "an answer of our own goes into any datagram");
    };
    for (std::size_t at = 0; at + 1 < name.wire().size(); at = name.parent(at))
        requireWhole([&](Bytes& out) { appendBlocked(out, query, at); });
    requireWhole([&](Bytes& out) { appendEmpty(out, query, ResponseCode::serverFailure); });
    requireWhole([&](Bytes& out) { appendTruncated(out, query, query.message); });
    requireWhole([&](Bytes& out) { appendTexts(out, query, {"one", "two"}); });
}

/// The same bytes as an answer to the same question.
void requireSharing(Bytes bytes, const Query& query)
{
    put16(bytes, Header::flags, query.flags | flag::response);
    const auto shared = SharedAnswer::from(bytes);
    if (!shared)
        return;
    Bytes out;
    shared->appendTo(out, query, 1);
    require(isWholeResponse(out), "a shared answer is well-formed");
}

void requireNoHarm(View message, const DomainSet& blocked)
{
    const auto question = Question::of(message);
    if (!question)
        return;
    static_cast<void>(blocked.blockedPart(question->name));
    static_cast<void>(leadsIntoBlocked(message, question->end, blocked));
    if (const auto shared = SharedAnswer::from(message))
        require(shared->message().size() <= message.size(), "nothing is added to a shared answer");
}

} // namespace

} // namespace stillgate::dns

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace stillgate::dns;

    static const auto blocked = [] {
        DomainSet set{NameKey{{}}, 1};
        set.insert(DomainName::fromText("blocked.example").value());
        return set;
    }();
    const View message{data, size};
    requireNoHarm(message, blocked);
    if (const auto query = Query::parse(message)) {
        requireOwnAnswers(*query);
        requireSharing({message.begin(), message.end()}, *query);
    } else if (query.error()) {
        Bytes out;
        appendFault(out, message, *query.error());
        stillgate::require(out.size() == Header::size, "a fault is answered by a header");
    }
    return 0;
}
