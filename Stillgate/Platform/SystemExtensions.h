#pragma once

#include "Models/Result.h"
#include "Platform/Permanence.h"
#include "Platform/Task.h"

#include <functional>
#include <string>

namespace stillgate
{

/// Parts of the program that the system runs by itself, with rights of their own. Main thread only.
class SystemExtensions
{
public:
    virtual ~SystemExtensions() = default;

    /// Puts the extension in place and has the system run it; the version that comes with the program wins over one
    /// that is there. As long as the user has to be asked, it waits, and `needsUserApproval` is called once. True: it
    /// is there; false: it will be, after a restart of the machine. Errors: SystemFailure.
    [[nodiscard]] virtual Task<Result<bool>> activate(
        std::string bundleIdentifier, std::function<void()> needsUserApproval) = 0;
};

/// The system's setting for its DNS proxy. It outlives the program. Main thread only.
class DNSProxyPreferences
{
public:
    struct Setting
    {
        bool isEnabled = false;
        bool hasProvider = false; ///< an extension is named that is the proxy
    };

    virtual ~DNSProxyPreferences() = default;

    [[nodiscard]] virtual Task<Result<Setting>> load() = 0;

    /// With a permanent one, it takes an administrator to switch it off.
    [[nodiscard]] virtual Task<Result<void>> enable(std::string providerBundleIdentifier, Permanence permanence) = 0;
    [[nodiscard]] virtual Task<Result<void>> disable() = 0;
};

} // namespace stillgate
