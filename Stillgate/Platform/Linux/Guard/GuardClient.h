#pragma once

#include "Models/Result.h"
#include "Platform/Permanence.h"
#include "Platform/Task.h"

#include <QDBusMessage>

#include <string>
#include <vector>

namespace stillgate
{

/// The guard, a system service that changes what the user has no right to (Guard/GuardObject.h). A call ends when the
/// guard has done it, or won't: while somebody is asked for consent that may take minutes. Errors: SystemFailure, with
/// the guard's sentence.
class GuardClient
{
public:
    /// Whether this machine has a guard; it need not run yet. One question to the system bus.
    [[nodiscard]] static bool isInstalled();

    struct Status
    {
        bool isDNSProxyEnabled = false; ///< it runs, with this user's part
        bool hasContainer = false;      ///< there is a folder for this user's part
    };

    [[nodiscard]] Task<Result<Status>> status();
    [[nodiscard]] Task<Result<void>> replaceHostsBlock(
        std::string block, std::vector<std::string> temporaryNames, Permanence permanence);
    [[nodiscard]] Task<Result<void>> removeHostsBlock();
    [[nodiscard]] Task<Result<void>> enableDNSProxy(Permanence permanence);
    [[nodiscard]] Task<Result<void>> disableDNSProxy();

private:
    [[nodiscard]] Task<Result<QVariantList>> call(QString method, QVariantList arguments = {});
    [[nodiscard]] Task<Result<void>> order(QString method, QVariantList arguments = {});
};

} // namespace stillgate
