#include "tests/dnsproxy/TestUpstream.h"

#include <algorithm>
#include <array>
#include <netinet/in.h>
#include <poll.h>
#include <sys/eventfd.h>

namespace stillgate::test
{

namespace
{

std::string lowered(std::string text)
{
    std::ranges::transform(text, text.begin(), [](unsigned char letter) { return std::tolower(letter); });
    return text;
}

} // namespace

TestUpstream::TestUpstream()
    : m_datagram(-1)
    , m_stream(-1)
    , m_end(::eventfd(0, EFD_CLOEXEC))
{
    while (!m_stream.isOpen()) {
        m_datagram = boundSocket(SOCK_DGRAM);
        m_port = portOf(m_datagram.number());
        try {
            m_stream = boundSocket(SOCK_STREAM, m_port);
        } catch (const std::runtime_error&) { // taken by somebody else's stream
        }
    }
    m_behaviours[""] = [](const Bytes& query, bool) {
        return std::vector<Bytes>{answerTo(query, {{.name = Packet::from(query).name}})};
    };
    m_thread = std::thread{[this] { serve(); }};
}

TestUpstream::~TestUpstream()
{
    ::eventfd_write(m_end.number(), 1);
    m_thread.join();
}

void TestUpstream::answer(const std::string& name, Behaviour behaviour)
{
    const std::lock_guard lock{m_mutex};
    m_behaviours[name] = std::move(behaviour);
}

void TestUpstream::answer(const std::string& name, std::vector<PacketRecord> records, std::uint16_t flags)
{
    answer(name, [records = std::move(records), flags](const Bytes& query, bool) {
        return std::vector<Bytes>{answerTo(query, records, flags)};
    });
}

std::vector<Bytes> TestUpstream::queries(const std::string& name) const
{
    const std::lock_guard lock{m_mutex};
    const auto found = m_queries.find(name);
    return found == m_queries.end() ? std::vector<Bytes>{} : found->second;
}

std::vector<std::uint16_t> TestUpstream::senders() const
{
    const std::lock_guard lock{m_mutex};
    return m_senders;
}

void TestUpstream::serve()
{
    std::array<pollfd, 3> events{pollfd{m_datagram.number(), POLLIN, 0}, pollfd{m_stream.number(), POLLIN, 0},
        pollfd{m_end.number(), POLLIN, 0}};
    while (::poll(events.data(), events.size(), -1) > 0 && events[2].revents == 0) {
        if (events[0].revents != 0)
            serveDatagram();
        if (events[1].revents != 0)
            serveStream();
    }
}

void TestUpstream::serveDatagram()
{
    Bytes query(65'536);
    sockaddr_in sender{};
    socklen_t size = sizeof(sender);
    auto* address = reinterpret_cast<sockaddr*>(&sender);
    const auto got = ::recvfrom(m_datagram.number(), query.data(), query.size(), 0, address, &size);
    if (got < 0)
        return;
    query.resize(static_cast<std::size_t>(got));
    {
        const std::lock_guard lock{m_mutex};
        m_senders.push_back(ntohs(sender.sin_port));
    }
    for (const auto& answer : react(query, false))
        ::sendto(m_datagram.number(), answer.data(), answer.size(), 0, address, size);
}

void TestUpstream::serveStream()
{
    const FileDescriptor connection{::accept4(m_stream.number(), nullptr, nullptr, SOCK_CLOEXEC)};
    if (const auto query = streamMessageFrom(connection.number())) {
        for (const auto& answer : react(*query, true))
            sendBytes(connection.number(), streamMessage(answer));
    }
}

std::vector<Bytes> TestUpstream::react(const Bytes& query, bool isStream)
{
    const auto name = lowered(Packet::from(query).name);
    const std::lock_guard lock{m_mutex};
    m_queries[name].push_back(query);
    const auto found = m_behaviours.find(name);
    return (found == m_behaviours.end() ? m_behaviours[""] : found->second)(query, isStream);
}

} // namespace stillgate::test
