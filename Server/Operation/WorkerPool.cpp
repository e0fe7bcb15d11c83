#include "Operation/WorkerPool.h"

namespace stillgate::server
{

WorkerPool::WorkerPool(int workers, const std::string& database)
{
    Database{database}.migrate();
    std::vector<std::future<void>> connected;
    for (int worker = 0; worker < workers; ++worker) {
        std::promise<void> connects;
        connected.push_back(connects.get_future());
        m_threads.emplace_back(
            [this, database, promise = std::move(connects)]() mutable { run(database, std::move(promise)); });
    }
    try {
        for (auto& connection : connected)
            connection.get();
    } catch (...) {
        stop();
        throw;
    }
}

WorkerPool::~WorkerPool()
{
    stop();
}

void WorkerPool::stop()
{
    {
        const std::scoped_lock lock{m_mutex};
        m_isStopping = true;
    }
    m_hasChanged.notify_all();
}

bool WorkerPool::post(Work work)
{
    {
        const std::scoped_lock lock{m_mutex};
        if (m_queue.size() >= longestQueue)
            return false;
        m_queue.push_back(std::move(work));
    }
    m_hasChanged.notify_one();
    return true;
}

void WorkerPool::run(const std::string& location, std::promise<void> connected)
{
    std::optional<Database> database; // a connection belongs to the thread that makes it
    try {
        database.emplace(location);
    } catch (...) {
        connected.set_exception(std::current_exception());
        return;
    }
    connected.set_value();
    for (;;) {
        std::unique_lock lock{m_mutex};
        m_hasChanged.wait(lock, [this] { return m_isStopping || !m_queue.empty(); });
        if (m_isStopping)
            return;
        const auto work = std::move(m_queue.front());
        m_queue.pop_front();
        lock.unlock();
        work(*database);
    }
}

} // namespace stillgate::server
