#include "Blocking/BrowserWatch.h"

#include "Platform/WebAddress.h"

namespace stillgate
{

void BrowserWatch::checkBrowserURL(const std::shared_ptr<RunningApplication>& application)
{
    const auto identifier = application->bundleIdentifier();
    if (identifier && m_browsers.canAsk(lowercased(*identifier)))
        runDetached(lookUp(application));
}

void BrowserWatch::stop()
{
    ++m_run;
    rearm();
}

Task<> BrowserWatch::lookUp(std::shared_ptr<RunningApplication> application)
{
    const int run = m_run;
    const auto address = co_await m_browsers.addressOfFrontTab(application);
    const auto host = address ? hostOfAddress(*address) : std::nullopt;
    if (!host || run != m_run)
        co_return;
    const auto* domain = domainCovering(m_blockedDomains, *host);
    if (domain == nullptr) {
        rearm();
        co_return;
    }
    if (m_lastBlockedDomain == *domain)
        co_return;
    m_lastBlockedDomain = *domain;
    m_onHit(*m_lastBlockedDomain, application);
}

} // namespace stillgate
