#pragma once

#include "Platform/FileManager.h"
#include "Platform/Host.h"
#include "Platform/HostsFileWriter.h"
#include "Platform/Log.h"
#include "Platform/OneShotEvent.h"
#include "Platform/UserDefaults.h"

#include <QProperty>

#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace stillgate
{

/// Keeps the marked block of the hosts file in step with a list of domains, with as few writes as can be: the list
/// that was last written is remembered over restarts, and an unchanged one costs nothing. Temporary domains stand there
/// beside the list, and leave it as it is when they go.
///
/// One write runs at a time. What is asked for meanwhile follows when it has ended: a removal, then the last list.
class HostsFileService
{
public:
    HostsFileService(HostsFileWriter& writer, FileManager& files, UserDefaults& defaults, Host& host, Log& log);

    enum class Rewrite {
        ifPartIsMissing, ///< the domains may be a part of the last list; if they are, they stand for the whole of it
        ifListIsMissing, ///< they are the list; names in the file beyond it stay, but nobody misses them
        always,          ///< they are the list; names beyond it go
    };

    /// Blocks these domains; with none, and no temporary ones, the block is removed. The outcome shows in `isActive`
    /// and `blockedCount`; a failed write is logged and not tried again before the next call.
    void applyBlocks(std::vector<std::string> domains, Rewrite rewrite = Rewrite::ifPartIsMissing);

    /// Blocks these domains too, in the place of earlier temporary ones; with none, the file becomes what it was before
    /// them, also where the list stands for good. They end with the process: what it has left in the file is no part of
    /// an intact one for the next.
    void setTemporaryDomains(std::set<std::string> domains);

    /// Of both kinds.
    void removeBlocks();

    /// How the block is to stand from now on. A change is written with the next list, also if its domains are the same.
    void setPermanence(Permanence permanence) { m_permanence = permanence; }

    [[nodiscard]] bool isWriting() const { return m_running != nullptr; }

    /// Whether the file has what the last list and the temporary domains stand for; so it is too when nothing is to
    /// stand there. Names beyond them are another account's, or of an earlier list.
    [[nodiscard]] bool isIntact() const;

    /// Writes that again.
    void repair();

    /// The names in the block, as the file has them; none if it can't be read as UTF-8.
    [[nodiscard]] std::vector<std::string> getBlockedDomains() const;

    /// Ends when no write is running or waiting.
    [[nodiscard]] Task<> settled();

    QProperty<bool> isActive{false};   ///< a block is believed to be in place
    QProperty<qint64> blockedCount{0}; ///< domains of the last list and temporary ones, not expanded to names

private:
    struct BlockRequest
    {
        std::vector<std::string> domains;
        std::string key;
    };

    void submit(BlockRequest request);
    void apply(BlockRequest request);
    [[nodiscard]] bool isPartOfLastList(const std::vector<std::string>& domains) const;
    [[nodiscard]] const std::vector<std::string>& lastList() const;
    [[nodiscard]] std::vector<std::string> wantedList() const;
    [[nodiscard]] bool isListThere(const BlockRequest& request) const;
    [[nodiscard]] std::vector<std::string> fullerList(const std::vector<std::string>& domains) const;
    [[nodiscard]] std::vector<std::string> withTemporary(std::vector<std::string> domains) const;
    [[nodiscard]] std::vector<std::string> temporaryNamesBeyond(const std::vector<std::string>& list) const;
    [[nodiscard]] bool isInFile(const std::vector<std::string>& domains) const;
    [[nodiscard]] bool hasTemporaryOfEarlierProcess() const;
    [[nodiscard]] Permanence permanenceInFile() const;
    void setPermanenceInFile(Permanence permanence);
    [[nodiscard]] Task<> write(BlockRequest request, std::vector<std::string> list);
    [[nodiscard]] Task<> remove();
    void reportWanted(const std::vector<std::string>& domains);
    void report(bool active, std::size_t count);
    void continueWithWaiting();

    HostsFileWriter& m_writer;
    FileManager& m_files;
    UserDefaults& m_defaults;
    Host& m_host;
    Log& m_log;

    Permanence m_permanence;                          ///< at first as last written
    std::optional<std::vector<std::string>> m_wanted; ///< the last list; none: not known since the start
    std::vector<std::string> m_written; ///< the list last written, which may have more; empty: not known, or none
    bool m_isRewriteDue = false;        ///< a write that takes names out has been asked for, and hasn't succeeded
    std::set<std::string> m_temporary;
    std::set<std::string> m_temporaryInFile; ///< as last written
    std::shared_ptr<OneShotEvent> m_running; ///< happens when no write is running any more; none when idle
    bool m_removalWaits = false;
    std::optional<BlockRequest> m_waiting;
};

} // namespace stillgate
