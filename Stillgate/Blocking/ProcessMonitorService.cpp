#include "Blocking/ProcessMonitorService.h"

#include <algorithm>
#include <filesystem>

namespace stillgate
{

using namespace std::chrono_literals;

namespace
{

/// Bounds how long a forbidden app stays in front when the desktop didn't tell of it.
constexpr auto pollInterval = 2s;
/// How long an app that is asked to quit has for it.
constexpr auto graceForQuitting = 500ms;

constexpr int nightBegins = 22; // o'clock
constexpr int nightEnds = 7;

std::string identifierOf(const RunningApplication& application)
{
    return lowercased(application.bundleIdentifier().value_or(""));
}

std::string nameOf(const RunningApplication& application)
{
    return application.localizedName().value_or("");
}

template <class Map>
std::optional<std::string> valueIn(const Map& map, const std::string& key)
{
    const auto found = map.find(key);
    return found != map.end() ? std::optional{found->second} : std::nullopt;
}

} // namespace

ProcessMonitorService::ProcessMonitorService(const Desktop& desktop)
    : m_desktop(desktop)
    , m_browserWatch(desktop.browsers, m_configuration.blockedDomains,
          [this](const std::string& domain, const Application& browser) { blockSite(domain, browser); })
    , m_quickBlock(activeQuickBlock, desktop.hostsFile, desktop.userNotifications, desktop.clock, desktop.scheduler)
{}

void ProcessMonitorService::setConfiguration(ProcessMonitorConfiguration configuration)
{
    m_configuration = std::move(configuration);
    const bool canBlock = !m_configuration.customBlockedBundleIds.empty() || !m_configuration.blockedDomains.empty();
    if (canBlock)
        prepareScreen();
}

/// After what is done now: the blocks don't wait for a screen.
void ProcessMonitorService::prepareScreen()
{
    if (!m_preparation)
        m_preparation = m_desktop.scheduler.once(0ms, [this] { m_desktop.blockModal.prepare(); });
}

void ProcessMonitorService::updateBudget(const std::optional<ScreenTimeBudget>& budget)
{
    const bool wasExceeded = m_budget.exceeded;
    m_budget = budgetState(budget);
    if (m_budget.exceeded && !wasExceeded && isMonitoring)
        check();
}

void ProcessMonitorService::startMonitoring()
{
    if (isMonitoring)
        return;
    isMonitoring = true;
    const auto handle = [this](const Application& application) {
        if (application)
            handleBlockedApp(application);
    };
    m_launches = m_desktop.workspace.onLaunch(handle);
    m_activations = m_desktop.workspace.onActivation(handle);
    m_pollTimer = m_desktop.scheduler.repeating(pollInterval, [this] { check(); });
    check();
}

void ProcessMonitorService::stopMonitoring()
{
    isMonitoring = false;
    m_pollTimer.reset();
    m_launches.reset();
    m_activations.reset();
    m_browserWatch.stop();
    stopQuickBlock();
    m_desktop.blockModal.closeBlockModal();
}

void ProcessMonitorService::startQuickBlock(
    const std::set<std::string>& bundleIds, const std::set<std::string>& domains, std::int64_t durationMinutes)
{
    if (!bundleIds.empty())
        prepareScreen();
    m_quickBlock.start(bundleIds, domains, durationMinutes);
    if (isMonitoring)
        check();
}

void ProcessMonitorService::stopQuickBlock()
{
    m_quickBlock.stop();
}

void ProcessMonitorService::check()
{
    const auto front = m_desktop.workspace.frontmostApplication();
    if (!front)
        return;
    handleBlockedApp(front);
    if (!m_configuration.blockedDomains.empty())
        m_browserWatch.checkBrowserURL(front);
}

void ProcessMonitorService::handleBlockedApp(const Application& application)
{
    const auto identifier = identifierOf(*application);
    const auto* match = processMatch(*application);
    if (application->isHidden()) {
        if (mayNotEvenHide(identifier, match))
            application->terminate();
        return;
    }
    const bool isBlocked = isBlockedByIdentifier(identifier);
    if (!isBlocked && match == nullptr)
        return;
    // Its screen is up, and it was brought back below that, or started once more.
    if (m_currentlyBlockingBundleId == identifier)
        stop(application, isStrict(identifier));
    else if (isBlocked)
        blockApp(application, nameOf(*application), false);
    else if (m_budget.exceeded)
        blockApp(application, nameOf(*application), true);
    else
        blockApp(application, match->displayName, false);
}

void ProcessMonitorService::stop(const Application& application, bool strict)
{
    if (!strict)
        return application->hide();
    if (m_quitting.contains(application))
        return;
    application->terminate();
    m_quitting[application] = m_desktop.scheduler.once(graceForQuitting, [this, application] {
        const auto done = m_quitting.extract(application);
        if (!application->isTerminated())
            application->forceTerminate();
    });
}

bool ProcessMonitorService::isBlockedByIdentifier(const std::string& identifier) const
{
    return m_quickBlock.blocks(identifier) || m_configuration.customBlockedBundleIds.contains(identifier);
}

/// A forbidden app that comes without a window would do its work unseen.
bool ProcessMonitorService::mayNotEvenHide(const std::string& identifier, const ProcessBlockEntry* match) const
{
    return m_configuration.customBlockedBundleIds.contains(identifier) || m_quickBlock.names(identifier) ||
        (m_budget.exceeded && match != nullptr);
}

const ProcessBlockEntry* ProcessMonitorService::processMatch(const RunningApplication& application) const
{
    if (m_configuration.blockedProcesses.empty())
        return nullptr;
    const auto executable = lowercased(std::filesystem::path{application.executablePath()}.filename().string());
    const auto name = lowercased(nameOf(application));
    const auto found = std::ranges::find_if(m_configuration.blockedProcesses, [&](const ProcessBlockEntry& entry) {
        const auto part = lowercased(entry.processName);
        return executable.contains(part) || name.contains(part);
    });
    return found != m_configuration.blockedProcesses.end() ? &*found : nullptr;
}

void ProcessMonitorService::blockApp(const Application& application, const std::string& displayName, bool isBudgetBlock)
{
    const auto identifier = identifierOf(*application);
    m_currentlyBlockingBundleId = identifier;
    m_browserWatch.rearm(); // a site's screen that this one takes the place of tells nobody of its end
    blockedAppAttempts = blockedAppAttempts + 1;
    const auto frame = application->frame(); // as long as there is one
    const bool strict = isStrict(identifier);
    stop(application, strict);
    m_desktop.blockModal.showBlockModal(
        {
            .variant = variantNow(isBudgetBlock),
            .appName = displayName,
            .session = m_configuration.activeSession,
            .category = valueIn(m_configuration.bundleIdCategories, identifier),
            .guardianMessage = m_configuration.guardianMessage,
            .illustrationOverride = m_configuration.guardianIllustrationKey,
            .allowBypass = !strict,
            .place = frame,
        },
        [this] { m_currentlyBlockingBundleId.reset(); });
}

bool ProcessMonitorService::isStrict(const std::string& identifier) const
{
    const auto policy = valueIn(m_configuration.bundleIdPolicies, identifier);
    return policy == permanentMode || m_configuration.guardianFlexibilityMode == permanentMode;
}

MacBlockVariant ProcessMonitorService::variantNow(bool isBudgetBlock) const
{
    if (isBudgetBlock)
        return MacBlockVariant::budget;
    const int hour = m_desktop.host.hourOfDay(m_desktop.clock.now());
    return hour >= nightBegins || hour < nightEnds ? MacBlockVariant::sleep : MacBlockVariant::app;
}

/// A guardian's message, picture and mode are for apps.
void ProcessMonitorService::blockSite(const std::string& domain, const Application& browser)
{
    blockedAppAttempts = blockedAppAttempts + 1;
    m_currentlyBlockingBundleId.reset(); // an app's screen that this one takes the place of tells nobody of its end
    m_desktop.blockModal.showBlockModal(
        {
            .variant = MacBlockVariant::website,
            .appName = browser->localizedName().value_or("Browser"),
            .domain = domain,
            .session = m_configuration.activeSession,
            .category = valueIn(m_configuration.domainCategories, domain),
            .allowBypass = true,
            .place = browser->frame(),
        },
        [this] { m_browserWatch.rearm(); });
}

} // namespace stillgate
