#pragma once

#include <condition_variable>
#include <cstdint>
#include <mutex>

namespace stillgate::server
{

/// A mutex whose waiters get it in the order in which they came. A std::mutex often goes to the thread that has just
/// released it: under load another one then waits for a second for what is free every few milliseconds.
class Turnstile
{
public:
    void lock()
    {
        std::unique_lock lock{m_mutex};
        const auto ticket = m_nextTicket++;
        m_hasAdvanced.wait(lock, [&] { return ticket == m_admitted; });
    }

    void unlock()
    {
        {
            const std::scoped_lock lock{m_mutex};
            ++m_admitted;
        }
        m_hasAdvanced.notify_all();
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_hasAdvanced;
    std::uint64_t m_nextTicket = 0;
    std::uint64_t m_admitted = 0;
};

} // namespace stillgate::server
