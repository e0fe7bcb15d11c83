#include "System/EventLoop.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <span>
#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <sys/signalfd.h>

namespace stillgate::dns
{

namespace
{

using Clock = std::chrono::steady_clock;

FileDescriptor terminationSignals()
{
    sigset_t signals{};
    ::sigemptyset(&signals);
    ::sigaddset(&signals, SIGTERM);
    ::sigaddset(&signals, SIGINT);
    return FileDescriptor{::signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK)};
}

} // namespace

Timer::Timer(EventLoop& loop, std::function<void()> elapsed)
    : m_loop(loop)
    , m_elapsed(std::move(elapsed))
{}

Timer::~Timer()
{
    cancel();
}

void Timer::start(Clock::duration after)
{
    cancel();
    m_place = m_loop.m_timers.emplace(Clock::now() + after, this);
    m_isRunning = true;
}

void Timer::cancel()
{
    if (std::exchange(m_isRunning, false))
        m_loop.m_timers.erase(m_place);
}

EventLoop::EventLoop(std::function<void()> afterEach)
    : m_afterEach(std::move(afterEach))
    , m_events(::epoll_create1(EPOLL_CLOEXEC))
    , m_wake(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
    , m_signals(terminationSignals())
{
    static_cast<void>(watch(m_wake.number(), EPOLLIN, [this](std::uint32_t) { runPosted(); }));
    static_cast<void>(watch(m_signals.number(), EPOLLIN, [this](std::uint32_t) { stop(); }));
}

std::uint64_t EventLoop::watch(int descriptor, std::uint32_t events, Ready ready)
{
    const auto number = ++m_lastNumber;
    m_watched.emplace(number, Watched{.descriptor = descriptor, .ready = std::move(ready)});
    epoll_event event{.events = events, .data = {.u64 = number}};
    ::epoll_ctl(m_events.number(), EPOLL_CTL_ADD, descriptor, &event);
    return number;
}

void EventLoop::change(std::uint64_t number, std::uint32_t events)
{
    epoll_event event{.events = events, .data = {.u64 = number}};
    ::epoll_ctl(m_events.number(), EPOLL_CTL_MOD, m_watched.at(number).descriptor, &event);
}

void EventLoop::forget(std::uint64_t number)
{
    auto& watched = m_watched.at(number);
    watched.isForgotten = true;
    ::epoll_ctl(m_events.number(), EPOLL_CTL_DEL, watched.descriptor, nullptr);
    m_forgotten.push_back(number);
}

void EventLoop::post(std::function<void()> work)
{
    {
        const std::lock_guard lock{m_mutex};
        m_posted.push_back(std::move(work));
    }
    static_cast<void>(::eventfd_write(m_wake.number(), 1));
}

void EventLoop::run()
{
    std::array<epoll_event, 64> ready{};
    while (!m_isStopping) {
        const auto count = ::epoll_wait(m_events.number(), ready.data(), ready.size(), waitingTime());
        for (const auto& event : std::span{ready}.first(static_cast<std::size_t>(std::max(count, 0))))
            serve(event.data.u64, event.events);
        runTimers();
        m_afterEach();
        removeForgotten();
    }
}

/// Milliseconds, rounded up; -1 is for ever.
int EventLoop::waitingTime() const
{
    if (m_timers.empty())
        return -1;
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(m_timers.begin()->first - Clock::now());
    return static_cast<int>(std::max<std::int64_t>(left.count(), 0));
}

void EventLoop::serve(std::uint64_t number, std::uint32_t events)
{
    const auto watched = m_watched.find(number);
    if (watched != m_watched.end() && !watched->second.isForgotten)
        watched->second.ready(events);
}

void EventLoop::runTimers()
{
    if (m_timers.empty())
        return;
    const auto now = Clock::now();
    while (!m_timers.empty() && m_timers.begin()->first <= now) {
        auto& timer = *m_timers.begin()->second;
        timer.cancel();
        timer.m_elapsed();
    }
}

void EventLoop::runPosted()
{
    eventfd_t ignored = 0;
    static_cast<void>(::eventfd_read(m_wake.number(), &ignored));
    std::vector<std::function<void()>> posted;
    {
        const std::lock_guard lock{m_mutex};
        posted.swap(m_posted);
    }
    for (const auto& work : posted)
        work();
}

void EventLoop::removeForgotten()
{
    for (const auto number : m_forgotten)
        m_watched.erase(number);
    m_forgotten.clear();
}

} // namespace stillgate::dns
