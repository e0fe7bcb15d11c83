#include "System/MessageStream.h"

#include "Message/Header.h"

#include <array>
#include <cerrno>
#include <sys/epoll.h>
#include <sys/socket.h>

namespace stillgate::dns
{

namespace
{

constexpr std::size_t lengthSize = 2;

bool isTemporary(int code)
{
    return code == EAGAIN || code == EINTR;
}

} // namespace

MessageStream::MessageStream(
    EventLoop& loop, FileDescriptor socket, Owner& owner, std::chrono::steady_clock::duration limit)
    : m_loop(loop)
    , m_socket(std::move(socket))
    , m_owner(owner)
    , m_limit(limit)
    , m_timer(loop, [this] { end(false); })
    , m_number(loop.watch(m_socket.number(), EPOLLIN, [this](std::uint32_t events) { serve(events); }))
    , m_events(EPOLLIN)
{
    m_timer.start(m_limit);
}

MessageStream::~MessageStream()
{
    close();
}

void MessageStream::send(View message)
{
    if (!isOpen())
        return;
    if (message.size() > largestMessage) {
        end(false);
        return;
    }
    append16(m_out, static_cast<std::uint16_t>(message.size()));
    append(m_out, message);
    updateEvents(); // it goes out when the socket has room: mostly at once, and what comes till then goes with it
}

void MessageStream::setReading(bool isReading)
{
    m_isReading = isReading;
    if (!isOpen())
        return;
    if (isReading)
        deliver();
    updateEvents();
}

void MessageStream::close()
{
    if (!isOpen())
        return;
    m_timer.cancel();
    m_loop.forget(m_number);
    m_socket = FileDescriptor{-1};
}

void MessageStream::serve(std::uint32_t events)
{
    const bool isBroken = (events & (EPOLLHUP | EPOLLERR)) != 0;
    if ((events & EPOLLOUT) != 0)
        write();
    if (isOpen() && m_hasEnded && isBroken)
        end(false);
    if (isOpen() && !m_hasEnded && (isBroken || (events & EPOLLIN) != 0))
        read();
    if (isOpen())
        updateEvents();
}

void MessageStream::read()
{
    std::array<std::uint8_t, 4096> bytes{};
    const auto got = ::recv(m_socket.number(), bytes.data(), bytes.size(), MSG_DONTWAIT);
    if (got < 0 && isTemporary(errno))
        return;
    if (got <= 0) {
        end(got == 0);
        return;
    }
    append(m_in, View{bytes}.first(static_cast<std::size_t>(got)));
    deliver();
}

void MessageStream::deliver()
{
    std::size_t begin = 0;
    while (isOpen() && m_isReading && m_in.size() - begin >= lengthSize) {
        const auto end = begin + lengthSize + number16(m_in, begin);
        if (end > m_in.size())
            break;
        m_timer.start(m_limit);
        m_owner.takeMessage(View{m_in}.subspan(begin + lengthSize, end - begin - lengthSize));
        begin = end;
    }
    m_in.erase(m_in.begin(), m_in.begin() + static_cast<std::ptrdiff_t>(begin));
}

void MessageStream::write()
{
    const auto sent = ::send(m_socket.number(), m_out.data(), m_out.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
    if (sent < 0 && !isTemporary(errno)) {
        end(false);
        return;
    }
    if (sent <= 0)
        return;
    m_out.erase(m_out.begin(), m_out.begin() + sent);
    if (!m_out.empty())
        return;
    m_timer.start(m_limit);
    m_owner.takeSent();
}

void MessageStream::end(bool canSend)
{
    m_hasEnded = true;
    m_owner.takeEnd(canSend);
}

void MessageStream::updateEvents()
{
    const auto events =
        (m_isReading && !m_hasEnded ? std::uint32_t{EPOLLIN} : 0U) | (m_out.empty() ? 0U : std::uint32_t{EPOLLOUT});
    if (std::exchange(m_events, events) != events)
        m_loop.change(m_number, events);
}

} // namespace stillgate::dns
