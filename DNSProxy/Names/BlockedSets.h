#pragma once

#include "Names/UserSets.h"
#include "System/FolderWatch.h"

#include <functional>
#include <thread>

namespace stillgate::dns
{

/// What is blocked, as it was found at one moment.
struct BlockedNames
{
    std::unique_ptr<const DomainSet> set; ///< null where it is still the same
    std::vector<std::string> faults;      ///< of the users' files, one line each
    std::uint64_t reloads = 0;            ///< changes since the start that are in force, and stored as well
    bool isLoadOver = false;              ///< what it has taken is free again
};

/// Keeps the set in force up to date, on a thread of its own: it waits for changes, reads, and hands out the new set
/// whole. Whoever answers queries meanwhile isn't held up.
class BlockedSets
{
public:
    /// Called on that thread: first with the set at the start, then with each other one, once more when it's stored,
    /// and where the faults are others.
    using Publish = std::function<void(BlockedNames)>;

    BlockedSets(std::filesystem::path group, std::filesystem::path state, Log& log);
    ~BlockedSets();

    void start(Publish publish);

private:
    void work();
    void tryLoad();
    void load();
    [[nodiscard]] bool lookAgain();
    void tell(std::unique_ptr<const DomainSet> set, bool isLoadOver);
    [[nodiscard]] int retryTime() const;
    [[nodiscard]] bool waitForChange() const;
    [[nodiscard]] bool restFor(std::chrono::nanoseconds time) const;

    Log& m_log;
    UserSets m_users;
    FolderWatch m_watch;
    FileDescriptor m_end; ///< readable once the thread has to end
    Publish m_publish;
    std::uint64_t m_reloads = 0;
    bool m_isUnionDue = true; ///< the one in force isn't that of the sets
    bool m_hasSet = false;    ///< since the first one was handed out
    std::string m_fault;      ///< of the last load
    std::vector<std::string> m_toldFaults;
    std::thread m_thread;
};

} // namespace stillgate::dns
