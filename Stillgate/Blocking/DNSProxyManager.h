#pragma once

#include "Blocking/DNSProxy.h"
#include "Platform/Log.h"
#include "Platform/SystemExtensions.h"

#include <QProperty>

#include <optional>
#include <string>

namespace stillgate
{

/// Has the system run the DNS proxy, as an extension of the program, and switches it on and off. The proxy reads
/// `blocked-config.json` by itself.
class DNSProxyManager final : public DNSProxy
{
public:
    DNSProxyManager(SystemExtensions& extensions, DNSProxyPreferences& preferences, Log& log)
        : m_extensions(extensions)
        , m_preferences(preferences)
        , m_log(log)
    {}

    /// Waits as long as the user is being asked. A failure is in `setupError`.
    [[nodiscard]] Task<bool> fullSetup() override;

    [[nodiscard]] Task<Result<void>> disable() override;
    void setPermanence(Permanence permanence) override;

    /// The system's verdict.
    [[nodiscard]] Task<bool> installExtension();
    [[nodiscard]] Task<Result<void>> setupProxy();

    /// Learns what the system knows, in the background.
    void checkStatus();

    QProperty<bool> isActive{false};                  ///< the system asks the proxy
    QProperty<bool> extensionInstalled{false};        ///< the extension is known to be there
    QProperty<std::optional<std::string>> setupError; ///< text for the user; the last failure

private:
    [[nodiscard]] Task<> loadStatus();

    SystemExtensions& m_extensions;
    DNSProxyPreferences& m_preferences;
    Log& m_log;
    Permanence m_permanence = Permanence::flexible;
};

} // namespace stillgate
