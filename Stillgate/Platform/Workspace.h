#pragma once

#include "Platform/Observers.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace stillgate
{

/// An app that runs, with all its windows.
class RunningApplication
{
public:
    virtual ~RunningApplication() = default;

    /// Which app it is, on every computer of the account: "org.mozilla.firefox". In the case in which the system gives
    /// it; nothing for a window that belongs to no app that is installed or well known.
    [[nodiscard]] virtual std::optional<std::string> bundleIdentifier() const = 0;

    /// The process that the app's windows belong to, in our pid namespace.
    [[nodiscard]] virtual int processIdentifier() const = 0;
};

/// The user's desktop: which apps run on it, and which one is in front. Main thread only.
class Workspace
{
public:
    using ApplicationObserver = Observers<std::shared_ptr<RunningApplication>>::Observer;

    virtual ~Workspace() = default;

    /// Null while nothing is in front, or where this desktop doesn't tell.
    [[nodiscard]] virtual std::shared_ptr<RunningApplication> frontmostApplication() const = 0;

    /// Called when another app comes to the front, with that app; with null when none is in front any more. A change of
    /// windows within one app is none.
    [[nodiscard]] virtual std::unique_ptr<Observation> onActivation(ApplicationObserver observer) = 0;

    /// Called when an app shows its first window.
    [[nodiscard]] virtual std::unique_ptr<Observation> onLaunch(ApplicationObserver observer) = 0;

    /// The name, in the user's language, of an app that is installed; nothing for any other identifier.
    [[nodiscard]] virtual std::optional<std::string> nameOfApplication(std::string_view bundleIdentifier) const = 0;

    /// Hands an http or https address to the user's browser. Whether that one shows it, nobody knows.
    virtual void open(const std::string& url) = 0;
};

} // namespace stillgate
