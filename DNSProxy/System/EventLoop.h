#pragma once

#include "Platform/Linux/FileDescriptor.h"

#include <chrono>
#include <functional>
#include <map>
#include <mutex>
#include <unordered_map>
#include <vector>

namespace stillgate::dns
{

class EventLoop;

/// Calls its owner once, at a time that can be changed until then. Of the loop's thread.
class Timer
{
public:
    Timer(EventLoop& loop, std::function<void()> elapsed);
    ~Timer();

    Timer(Timer&&) = delete;

    /// Instead of the time set before.
    void start(std::chrono::steady_clock::duration after);
    void cancel();

    [[nodiscard]] bool isRunning() const { return m_isRunning; }

private:
    friend class EventLoop;

    EventLoop& m_loop;
    std::function<void()> m_elapsed;
    bool m_isRunning = false;
    std::multimap<std::chrono::steady_clock::time_point, Timer*>::iterator m_place;
};

/// Waits for descriptors, for times and for other threads, and calls back on its own thread: on epoll(7), by its level.
///
/// It costs one call of the kernel for each time of waiting. General loops take two or three, as they ask to be told
/// again; that would be half of what a query takes.
class EventLoop
{
public:
    using Ready = std::function<void(std::uint32_t events)>;

    /// `afterEach` is called when all that was ready at one time has been served.
    explicit EventLoop(std::function<void()> afterEach);

    /// Calls back whenever one of these events (EPOLLIN, …) is there. What is there has to be taken, or it is told
    /// again. Gives the number that the others want.
    [[nodiscard]] std::uint64_t watch(int descriptor, std::uint32_t events, Ready ready);
    void change(std::uint64_t number, std::uint32_t events);

    /// Ahead of closing the descriptor. It isn't called any more.
    void forget(std::uint64_t number);

    /// Runs something on the loop's thread, soon; from any thread.
    void post(std::function<void()> work);

    /// Until stop(), or SIGTERM or SIGINT, which the calling thread and all that it has started must have blocked.
    void run();

    void stop() { m_isStopping = true; }

private:
    friend class Timer;

    struct Watched
    {
        int descriptor;
        Ready ready;
        bool isForgotten = false;
    };

    [[nodiscard]] int waitingTime() const;
    void serve(std::uint64_t number, std::uint32_t events);
    void runTimers();
    void runPosted();
    void removeForgotten();

    std::function<void()> m_afterEach;
    FileDescriptor m_events;
    FileDescriptor m_wake;
    FileDescriptor m_signals;
    std::unordered_map<std::uint64_t, Watched> m_watched;
    std::vector<std::uint64_t> m_forgotten; ///< since the last round: one may be the one that is being served
    std::uint64_t m_lastNumber = 0;
    std::multimap<std::chrono::steady_clock::time_point, Timer*> m_timers;
    std::mutex m_mutex; ///< guards the next one
    std::vector<std::function<void()>> m_posted;
    bool m_isStopping = false;
};

} // namespace stillgate::dns
