#pragma once

#include "System/Datagrams.h"

#include <memory>

namespace stillgate::dns
{

/// Takes answers to whoever asked: a socket, or a connection.
class AnswerSink
{
public:
    virtual ~AnswerSink() = default;

    virtual void send(View answer, const Endpoint& receiver) = 0;
};

/// Who asks, and how.
struct Asker
{
    std::shared_ptr<AnswerSink> sink;
    Endpoint address;
    bool isStream = false; ///< TCP: an answer of any size goes through
};

/// An asker whose query is on its way to an upstream, with the query, or a bare form of it where it isn't the one sent.
struct WaitingAsker
{
    Asker asker;
    Bytes query;
};

/// What a forwarder does with an answer, and with queries that get none.
class ForwardedQueries
{
public:
    virtual ~ForwardedQueries() = default;

    /// An answer to all of them, who asked the same; the first one's query is the one that was sent. `isCurrent` unless
    /// other upstreams are in use by now.
    virtual void takeAnswer(View answer, std::span<const WaitingAsker> askers, bool isCurrent) = 0;

    virtual void takeFailure(std::span<const WaitingAsker> askers) = 0;
};

} // namespace stillgate::dns
