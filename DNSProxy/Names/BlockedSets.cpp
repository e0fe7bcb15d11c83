#include "Names/BlockedSets.h"

#include <algorithm>
#include <array>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/resource.h>

namespace stillgate::dns
{

namespace
{

using Clock = std::chrono::steady_clock;

} // namespace

BlockedSets::BlockedSets(std::filesystem::path group, std::filesystem::path state, Log& log)
    : m_log(log)
    , m_users(std::move(group), std::move(state), log)
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
    tryLoad();
    // Whoever asks for names comes first from now on. On Linux this is of one thread.
    ::setpriority(PRIO_PROCESS, 0, 10);
    while (waitForChange()) {
        const auto begin = Clock::now();
        tryLoad();
        // THREAT: whoever rewrites a large file without end gets half of a processor.
        if (!restFor(Clock::now() - begin))
            return;
    }
}

/// Where memory runs out, what is in force stays so.
void BlockedSets::tryLoad()
{
    try {
        load();
    } catch (const std::exception& fault) {
        m_isUnionDue = true;
        auto text = std::string{"the users' files can't be loaded: "} + fault.what();
        if (text != m_fault)
            m_log.write("[DNSProxy] " + text);
        m_fault = std::move(text);
        tell(nullptr, true);
    }
}

void BlockedSets::load()
{
    m_watch.drain();
    m_isUnionDue = lookAgain() || m_isUnionDue;
    auto set = m_isUnionDue ? m_users.makeUnion() : nullptr;
    const bool isNew = set != nullptr;
    const bool isReload = isNew && m_hasSet;
    if (isNew) {
        tell(std::move(set), false);
        m_hasSet = true;
        m_isUnionDue = false;
    }
    m_users.store();
    if (isReload)
        ++m_reloads;
    m_fault.clear();
    tell(nullptr, isNew);
}

/// True if the union may be another one. Folders are watched ahead of looking, so that no change falls in between;
/// those of new users are found by looking.
bool BlockedSets::lookAgain()
{
    const auto watchAll = [this] {
        const auto folders = m_users.folders();
        std::ranges::for_each(folders, [this](const auto& folder) { m_watch.watch(folder); });
        return folders;
    };
    auto watched = watchAll();
    bool hasChanged = m_users.refresh();
    for (auto found = watchAll(); found != watched; found = watchAll()) {
        hasChanged = m_users.refresh() || hasChanged;
        watched = std::move(found);
    }
    return hasChanged;
}

/// What is new.
void BlockedSets::tell(std::unique_ptr<const DomainSet> set, bool isLoadOver)
{
    auto faults = m_users.faults();
    if (!m_fault.empty())
        faults.push_back(m_fault);
    const bool isNews = std::exchange(m_toldFaults, faults) != faults;
    if (set || isLoadOver || isNews)
        m_publish({.set = std::move(set), .faults = std::move(faults), .reloads = m_reloads, .isLoadOver = isLoadOver});
}

/// Milliseconds until the next load without a change: soon while nobody is answered, and now and then while something
/// couldn't be read or written, as on a full disk; -1 is for never.
int BlockedSets::retryTime() const
{
    if (!m_hasSet)
        return 1000;
    return m_isUnionDue || m_users.hasUnstored() ? 30'000 : -1;
}

/// False if the thread has to end.
bool BlockedSets::waitForChange() const
{
    std::array<pollfd, 2> events{pollfd{m_watch.descriptor(), POLLIN, 0}, pollfd{m_end.number(), POLLIN, 0}};
    while (::poll(events.data(), events.size(), retryTime()) < 0) {
    }
    return events[1].revents == 0;
}

bool BlockedSets::restFor(std::chrono::nanoseconds time) const
{
    pollfd end{m_end.number(), POLLIN, 0};
    using std::chrono::milliseconds;
    // At least long enough for a load after every event of the folder to be next to nothing.
    const auto rest = std::clamp(std::chrono::ceil<milliseconds>(time), milliseconds{10}, milliseconds{1000});
    return ::poll(&end, 1, static_cast<int>(rest.count())) == 0;
}

} // namespace stillgate::dns
