#pragma once

#include "Platform/Linux/Desktop/BrowserLauncher.h"
#include "Platform/Linux/Desktop/DesktopEntries.h"
#include "Platform/Workspace.h"

namespace stillgate
{

/// No desktop, or one that doesn't tell: no app is ever seen, and everything else works.
class AbsentWorkspace final : public Workspace
{
public:
    AbsentWorkspace(DesktopEntries& entries, Log& log)
        : m_entries(entries)
        , m_log(log)
    {
        m_log.write("[Workspace] No usable desktop: apps are not seen");
    }

    [[nodiscard]] std::shared_ptr<RunningApplication> frontmostApplication() const override { return nullptr; }

    [[nodiscard]] std::unique_ptr<Observation> onActivation(ApplicationObserver) override
    {
        return std::make_unique<Observation>();
    }

    [[nodiscard]] std::unique_ptr<Observation> onLaunch(ApplicationObserver) override
    {
        return std::make_unique<Observation>();
    }

    [[nodiscard]] std::optional<std::string> nameOfApplication(std::string_view bundleIdentifier) const override
    {
        return m_entries.nameOf(bundleIdentifier);
    }

    [[nodiscard]] std::vector<ApplicationDescription> installedApplications() const override
    {
        return m_entries.installedApplications();
    }

    [[nodiscard]] std::vector<ApplicationDescription> runningApplications() const override { return {}; }

    void open(const std::string& url) override { openInBrowser(url, m_log); }

private:
    DesktopEntries& m_entries;
    Log& m_log;
};

} // namespace stillgate
