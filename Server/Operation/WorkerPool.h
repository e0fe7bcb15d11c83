#pragma once

#include "Database/Database.h"

#include <condition_variable>
#include <deque>
#include <functional>
#include <future>
#include <mutex>
#include <thread>
#include <vector>

namespace stillgate::server
{

/// Threads that answer requests, each with a database connection of its own.
class WorkerPool
{
public:
    using Work = std::function<void(Database&)>;

    /// Throws DatabaseError if a connection can't be made.
    WorkerPool(int workers, const std::string& database);

    /// Work that hasn't begun is dropped; work that has is finished.
    ~WorkerPool();

    WorkerPool(const WorkerPool&) = delete;
    WorkerPool& operator=(const WorkerPool&) = delete;

    /// False, and the work is dropped, if too much waits already.
    [[nodiscard]] bool post(Work work);

private:
    static constexpr std::size_t longestQueue = 2000;

    void stop();
    void run(const std::string& database, std::promise<void> connected);

    std::mutex m_mutex;
    std::condition_variable m_hasChanged;
    std::deque<Work> m_queue;
    bool m_isStopping = false;
    std::vector<std::jthread> m_threads;
};

} // namespace stillgate::server
