#pragma once

#include "Platform/Linux/FileDescriptor.h"
#include "Serving/QueryHandler.h"

namespace stillgate::dns
{

/// Answers the queries that come to one datagram socket.
class UDPListener final : public AnswerSink, public std::enable_shared_from_this<UDPListener>
{
public:
    UDPListener(FileDescriptor socket, QueryHandler& handler);

    [[nodiscard]] int descriptor() const { return m_socket.number(); }

    /// Takes the queries that have come. What can be answered at once goes out with the next flush().
    void receive();

    void send(View answer, const Endpoint& receiver) override { m_answers.add(answer, receiver); }

    void flush();

private:
    FileDescriptor m_socket;
    QueryHandler& m_handler;
    ReceivedDatagrams m_queries;
    DatagramBatch m_answers;
};

} // namespace stillgate::dns
