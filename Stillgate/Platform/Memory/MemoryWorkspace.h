#pragma once

#include "Platform/Workspace.h"

#include <algorithm>
#include <map>
#include <utility>
#include <vector>

namespace stillgate
{

/// An app that obeys, unless a test says otherwise, and that remembers what it was told.
class MemoryApplication final : public RunningApplication
{
public:
    MemoryApplication(std::optional<std::string> identifier, int pid)
        : name(identifier)
        , m_identifier(std::move(identifier))
        , m_pid(pid)
    {}

    [[nodiscard]] std::optional<std::string> bundleIdentifier() const override { return m_identifier; }

    [[nodiscard]] int processIdentifier() const override { return m_pid; }

    [[nodiscard]] std::optional<std::string> localizedName() const override { return name; }

    [[nodiscard]] std::string executablePath() const override { return executable; }

    [[nodiscard]] bool isHidden() const override { return hidden; }

    void hide() override
    {
        told.emplace_back("hide");
        hidden = true;
    }

    void terminate() override
    {
        told.emplace_back("terminate");
        terminated = terminated || isPolite;
    }

    void forceTerminate() override
    {
        told.emplace_back("forceTerminate");
        terminated = true;
    }

    [[nodiscard]] bool isTerminated() const override { return terminated; }

    [[nodiscard]] std::optional<std::string> frontWindowTitle() const override { return std::nullopt; }

    [[nodiscard]] std::optional<ScreenRectangle> frame() const override { return place; }

    std::optional<std::string> name;
    std::string icon;
    std::string executable;
    bool hidden = false;
    bool terminated = false;
    bool isPolite = true; ///< quits when it is asked to
    std::optional<ScreenRectangle> place;
    std::vector<std::string> told;

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
        if (app(identifier).terminated)
            end(identifier);
        const bool wasHidden = std::exchange(app(identifier).hidden, false);
        const auto application = m_running[identifier];
        if (noteLaunch(identifier))
            m_launch.notify(application);
        if ((m_front == application && !wasHidden) || application->isHidden() || application->isTerminated())
            return;
        m_front = application;
        m_activation.notify(m_front);
    }

    /// The app comes up without a window in sight.
    void launchHidden(const std::string& identifier)
    {
        app(identifier).hidden = true;
        noteLaunch(identifier);
        m_launch.notify(m_running[identifier]);
    }

    /// The app as it is or will be; not launched by this.
    MemoryApplication& app(const std::optional<std::string>& identifier)
    {
        auto& application = m_running[identifier];
        if (!application)
            application = std::make_shared<MemoryApplication>(identifier, 1000 + static_cast<int>(m_running.size()));
        return *application;
    }

    void leaveNothingInFront()
    {
        m_front.reset();
        m_activation.notify(m_front);
    }

    [[nodiscard]] std::shared_ptr<RunningApplication> frontmostApplication() const override
    {
        return m_front && !m_front->isHidden() && !m_front->isTerminated() ? m_front : nullptr;
    }

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
        const auto found = std::ranges::find(installed, bundleIdentifier, &ApplicationDescription::bundleIdentifier);
        return found != installed.end() ? std::optional{found->name} : std::nullopt;
    }

    [[nodiscard]] std::vector<ApplicationDescription> installedApplications() const override { return installed; }

    [[nodiscard]] std::vector<ApplicationDescription> runningApplications() const override
    {
        std::vector<ApplicationDescription> running;
        for (const auto& identifier : m_launched) {
            const auto& application = *m_running.at(identifier);
            if (identifier && !application.isTerminated())
                running.emplace_back(*identifier, application.name.value_or(*identifier), application.icon);
        }
        return running;
    }

    void open(const std::string& url) override { openedURLs.push_back(url); }

    std::vector<ApplicationDescription> installed;
    std::vector<std::string> openedURLs;

private:
    /// Whether it is one.
    bool noteLaunch(const std::optional<std::string>& identifier)
    {
        if (std::ranges::find(m_launched, identifier) != m_launched.end())
            return false;
        m_launched.push_back(identifier);
        return true;
    }

    void end(const std::optional<std::string>& identifier)
    {
        m_running.erase(identifier);
        std::erase(m_launched, identifier);
    }

    std::map<std::optional<std::string>, std::shared_ptr<MemoryApplication>> m_running;
    std::vector<std::optional<std::string>> m_launched; ///< in the order in which they were
    std::shared_ptr<RunningApplication> m_front;
    Observers<std::shared_ptr<RunningApplication>> m_activation;
    Observers<std::shared_ptr<RunningApplication>> m_launch;
};

} // namespace stillgate
