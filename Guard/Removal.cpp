#include "Guard/Removal.h"

#include "Guard/UnitNames.h"

namespace stillgate::guard
{

Task<bool> Removal::run()
{
    bool isComplete = true;
    const auto note = [&](const Result<void>& result) {
        if (result)
            return;
        log.write("[Guard] Not removed: " + result.error().description());
        isComplete = false;
    };
    // The guard itself first: applications that still run would have it put back what goes.
    note(co_await units.mask({guardUnit}));
    note(co_await units.stopAndDisable({guardUnit, redirectUnit, proxySocketUnit, proxyUnit}));
    note(co_await deleteTable());
    note(co_await hostsFile.removeBlock());
    for (const auto& folder : folders)
        note(co_await removeFolder(folder));
    co_return isComplete;
}

/// The unit deletes it when it stops; where there was no service manager to stop it, this does.
Task<Result<void>> Removal::deleteTable()
{
    const std::string keepRedirect = "/usr/lib/stillgate/keep-redirect";
    if (!std::filesystem::exists(keepRedirect))
        co_return Result<void>{};
    const auto status = co_await children.run({.program = keepRedirect, .arguments = {"unload"}});
    if (!status)
        co_return std::unexpected{status.error()};
    if (*status != 0)
        co_return failure(SystemFailure{"delete the table of the DNS redirection"});
    co_return Result<void>{};
}

/// THREAT: users have put into it what they like, and may still be writing. Under its other name nobody finds it.
Task<Result<void>> Removal::removeFolder(std::filesystem::path folder)
{
    const auto aside = folder.string() + ".removed";
    std::error_code ignored;
    std::filesystem::rename(folder, aside, ignored);
    const auto status = co_await children.run(
        {.program = "/bin/rm", .arguments = {"-rf", "--one-file-system", "--", aside, folder.string()}});
    if (!status || *status != 0)
        co_return failure(SystemFailure{"remove " + folder.string()});
    co_return Result<void>{};
}

} // namespace stillgate::guard
