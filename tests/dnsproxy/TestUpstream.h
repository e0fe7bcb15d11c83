#pragma once

#include "tests/dnsproxy/TestSocket.h"

#include <functional>
#include <map>
#include <mutex>
#include <thread>

namespace stillgate::test
{

/// A resolver on a port of 127.0.0.1, for UDP and TCP, on a thread of its own. By default every name has the address
/// 192.0.2.1 for five minutes.
class TestUpstream
{
public:
    /// What it sends back to a query of a name: nothing, or any messages.
    using Behaviour = std::function<std::vector<Bytes>(const Bytes& query, bool isStream)>;

    TestUpstream();
    ~TestUpstream();

    TestUpstream(TestUpstream&&) = delete;

    /// From now on, for this name, in lower case and with a dot at its end; for all others if it is empty.
    void answer(const std::string& name, Behaviour behaviour);

    /// The same, with these records.
    void answer(const std::string& name, std::vector<PacketRecord> records, std::uint16_t flags = 0x8180);

    [[nodiscard]] std::string address() const { return "127.0.0.1:" + std::to_string(m_port); }

    /// The queries that it has got for a name.
    [[nodiscard]] std::vector<Bytes> queries(const std::string& name) const;

    /// The ports that they came from, of all names.
    [[nodiscard]] std::vector<std::uint16_t> senders() const;

private:
    void serve();
    void serveDatagram();
    void serveStream();
    std::vector<Bytes> react(const Bytes& query, bool isStream);

    FileDescriptor m_datagram;
    FileDescriptor m_stream;
    FileDescriptor m_end;
    std::uint16_t m_port = 0;
    mutable std::mutex m_mutex;
    std::map<std::string, Behaviour> m_behaviours;
    std::map<std::string, std::vector<Bytes>> m_queries;
    std::vector<std::uint16_t> m_senders;
    std::thread m_thread;
};

} // namespace stillgate::test
