#pragma once

#include "Platform/Workspace.h"

#include <map>
#include <vector>

namespace stillgate
{

class MemoryApplication final : public RunningApplication
{
public:
    MemoryApplication(std::optional<std::string> identifier, int pid)
        : m_identifier(std::move(identifier))
        , m_pid(pid)
    {}

    [[nodiscard]] std::optional<std::string> bundleIdentifier() const override { return m_identifier; }

    [[nodiscard]] int processIdentifier() const override { return m_pid; }

private:
    std::optional<std::string> m_identifier;
    int m_pid;
};

/// A desktop on which a test brings apps to the front.
class MemoryWorkspace final : public Workspace
{
public:
    /// Launches the app on first use; nothing: a window that belongs to no installed app.
    void bringToFront(const std::optional<std::string>& identifier)
    {
        auto& application = m_running[identifier];
        if (!application) {
            application = std::make_shared<MemoryApplication>(identifier, 1000 + static_cast<int>(m_running.size()));
            m_launch.notify(application);
        }
        if (m_front == application)
            return;
        m_front = application;
        m_activation.notify(m_front);
    }

    void leaveNothingInFront()
    {
        m_front.reset();
        m_activation.notify(m_front);
    }

    [[nodiscard]] std::shared_ptr<RunningApplication> frontmostApplication() const override { return m_front; }

    [[nodiscard]] std::unique_ptr<Observation> onActivation(ApplicationObserver observer) override
    {
        return m_activation.add(std::move(observer));
    }

    [[nodiscard]] std::unique_ptr<Observation> onLaunch(ApplicationObserver observer) override
    {
        return m_launch.add(std::move(observer));
    }

    [[nodiscard]] std::optional<std::string> nameOfApplication(std::string_view bundleIdentifier) const override
    {
        const auto found = names.find(bundleIdentifier);
        return found != names.end() ? std::optional{found->second} : std::nullopt;
    }

    void open(const std::string& url) override { openedURLs.push_back(url); }

    std::map<std::string, std::string, std::less<>> names; ///< of the installed apps, by identifier
    std::vector<std::string> openedURLs;

private:
    std::map<std::optional<std::string>, std::shared_ptr<RunningApplication>> m_running;
    std::shared_ptr<RunningApplication> m_front;
    Observers<std::shared_ptr<RunningApplication>> m_activation;
    Observers<std::shared_ptr<RunningApplication>> m_launch;
};

} // namespace stillgate
