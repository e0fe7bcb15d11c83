#pragma once

#include "Platform/BrowserScripting.h"
#include "Platform/Linux/Desktop/AccessibleObject.h"
#include "Platform/Log.h"

namespace stillgate
{

/// Asks browsers over the accessibility bus, which shows private windows too and needs nobody's consent.
class AccessibilityBrowserScripting final : public BrowserScripting
{
public:
    /// Switches the bus on: some browsers tell only if it was on when they started.
    explicit AccessibilityBrowserScripting(Log& log);

    [[nodiscard]] bool canAsk(std::string_view bundleIdentifier) const override;
    [[nodiscard]] Task<std::optional<std::string>> addressOfFrontTab(
        std::shared_ptr<RunningApplication> browser) override;

private:
    [[nodiscard]] Task<> connect();
    [[nodiscard]] Task<std::optional<AccessibleObject>> programOf(int process);

    Log& m_log;
    std::optional<QDBusConnection> m_bus; ///< none: there is none, or it isn't known yet
    bool m_isConnecting = false;
    bool m_isKnownToBeAbsent = false;
};

} // namespace stillgate
