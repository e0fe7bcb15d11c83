#pragma once

#include "Blocking/DomainNames.h"
#include "Platform/BrowserScripting.h"

#include <functional>

namespace stillgate
{

/// Looks at the address in the front tab of a browser. It changes nothing there: what follows from a blocked site is
/// the business of whoever is told.
class BrowserWatch
{
public:
    /// Told of the domain that covers the site, and of the browser.
    using HitHandler = std::function<void(const std::string& domain, const std::shared_ptr<RunningApplication>&)>;

    /// The domains are looked up as they are when the browser answers.
    BrowserWatch(BrowserScripting& browsers, const DomainSet& blockedDomains, HitHandler onHit)
        : m_browsers(browsers)
        , m_blockedDomains(blockedDomains)
        , m_onHit(std::move(onHit))
    {}

    /// Asks the app, if it is a browser that answers. A site is told once, until the tab has shown another one that
    /// isn't blocked, or until `rearm`. Checks may overlap: a browser can be slow.
    void checkBrowserURL(const std::shared_ptr<RunningApplication>& application);

    /// The same site is told again at the next check.
    void rearm() { m_lastBlockedDomain.reset(); }

    /// What is still asked about is told no more.
    void stop();

private:
    [[nodiscard]] Task<> lookUp(std::shared_ptr<RunningApplication> application);

    BrowserScripting& m_browsers;
    const DomainSet& m_blockedDomains;
    HitHandler m_onHit;
    std::optional<std::string> m_lastBlockedDomain; ///< told, and its site not left yet
    int m_run = 0;                                  ///< counts the calls of `stop`
};

} // namespace stillgate
