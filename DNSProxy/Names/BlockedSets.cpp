#include "Names/BlockedSets.h"

#include <algorithm>
#include <array>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/resource.h>

namespace stillgate::dns
{

using Clock = std::chrono::steady_clock;

BlockedSets::BlockedSets(std::filesystem::path group, std::filesystem::path state, Log& log)
    : m_users(std::move(group), std::move(state), log)
    , m_end(::eventfd(0, EFD_CLOEXEC))
{}

BlockedSets::~BlockedSets()
{
    if (!m_thread.joinable())
        return;
    static_cast<void>(::eventfd_write(m_end.number(), 1));
    m_thread.join();
}

void BlockedSets::start(Publish publish)
{
    m_publish = std::move(publish);
    m_thread = std::thread{[this] { work(); }};
}

void BlockedSets::work()
{
    load(true);
    // Whoever asks for names comes first from now on. On Linux this is of one thread.
    ::setpriority(PRIO_PROCESS, 0, 10);
    while (waitForChange()) {
        const auto begin = Clock::now();
        load(false);
        // THREAT: whoever rewrites a large file without end gets half of a processor.
        if (!restFor(Clock::now() - begin))
            return;
    }
}

void BlockedSets::load(bool isFirst)
{
    m_watch.drain();
    // Ahead of looking, so that no change falls in between. New users' folders are found by looking.
    const auto watchAll = [this] {
        const auto folders = m_users.folders();
        std::ranges::for_each(folders, [this](const auto& folder) { m_watch.watch(folder); });
        return folders;
    };
    auto watched = watchAll();
    bool hasChanged = m_users.refresh() || isFirst;
    for (auto found = watchAll(); found != watched; found = watchAll()) {
        hasChanged = m_users.refresh() || hasChanged;
        watched = std::move(found);
    }
    m_publish({.set = hasChanged ? m_users.makeUnion() : nullptr, .faults = m_users.faults(), .reloads = m_reloads});
    m_users.store();
    if (hasChanged && !isFirst)
        ++m_reloads;
    m_publish({.set = nullptr, .faults = m_users.faults(), .reloads = m_reloads});
}

/// False if the thread has to end.
bool BlockedSets::waitForChange() const
{
    std::array<pollfd, 2> events{pollfd{m_watch.descriptor(), POLLIN, 0}, pollfd{m_end.number(), POLLIN, 0}};
    while (::poll(events.data(), events.size(), -1) < 0) {
    }
    return events[1].revents == 0;
}

bool BlockedSets::restFor(std::chrono::nanoseconds time) const
{
    pollfd end{m_end.number(), POLLIN, 0};
    using std::chrono::milliseconds;
    const auto rest = std::min(std::chrono::duration_cast<milliseconds>(time), milliseconds{1000});
    return ::poll(&end, 1, static_cast<int>(rest.count())) == 0;
}

} // namespace stillgate::dns
