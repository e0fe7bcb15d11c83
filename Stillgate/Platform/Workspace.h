#pragma once

#include "Platform/Observers.h"
#include "Platform/ScreenRectangle.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace stillgate
{

/// An app as a list shows it.
struct ApplicationDescription
{
    std::string bundleIdentifier; ///< which app it is, as `RunningApplication::bundleIdentifier`
    std::string name;             ///< in the user's language
    std::string icon;             ///< its name in the desktop's icon theme, or the path of a picture; empty: none

    bool operator==(const ApplicationDescription&) const = default;
};

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

    /// In the user's language; nothing if neither the system nor the app itself tells.
    [[nodiscard]] virtual std::optional<std::string> localizedName() const = 0;

    /// The path of the program that its process runs; empty if unknown.
    [[nodiscard]] virtual std::string executablePath() const = 0;

    /// Whether it has windows, and all of them are put away.
    [[nodiscard]] virtual bool isHidden() const = 0;

    /// Puts all windows away; the app runs on.
    virtual void hide() = 0;

    /// Asks all windows to close, as their close buttons would: the app may ask the user what becomes of unsaved work,
    /// or not obey at all.
    virtual void terminate() = 0;

    /// Ends its processes at once. THREAT: a process number soon belongs to a stranger; what is ended is the process
    /// that had the windows, or nothing.
    virtual void forceTerminate() = 0;

    /// Whether its windows are gone, or its processes.
    [[nodiscard]] virtual bool isTerminated() const = 0;

    /// What its window is called that was in front last; nothing if this desktop doesn't tell. THREAT: it tells what
    /// the user reads. It tells one window from another, and goes nowhere else.
    [[nodiscard]] virtual std::optional<std::string> frontWindowTitle() const = 0;

    /// Where its window stands that was in front last; nothing if this desktop doesn't tell. In pixels of the screen.
    [[nodiscard]] virtual std::optional<ScreenRectangle> frame() const = 0;
};

/// The user's desktop: which apps run on it, and which one is in front. Main thread only.
class Workspace
{
public:
    using ApplicationObserver = Observers<std::shared_ptr<RunningApplication>>::Observer;

    virtual ~Workspace() = default;

    /// Null while nothing is in front, or where this desktop doesn't tell. A hidden app is never in front, whatever the
    /// desktop says for a moment: whoever hides the app in front would else find it there once more.
    [[nodiscard]] virtual std::shared_ptr<RunningApplication> frontmostApplication() const = 0;

    /// Called when another app comes to the front, with that app; with null when none is in front any more. A change of
    /// windows within one app is none.
    [[nodiscard]] virtual std::unique_ptr<Observation> onActivation(ApplicationObserver observer) = 0;

    /// Called when an app shows its first window.
    [[nodiscard]] virtual std::unique_ptr<Observation> onLaunch(ApplicationObserver observer) = 0;

    /// The name, in the user's language, of an app that is installed; nothing for any other identifier.
    [[nodiscard]] virtual std::optional<std::string> nameOfApplication(std::string_view bundleIdentifier) const = 0;

    /// The apps that the user starts from a menu, each identifier once, in the order of the folders that they are
    /// installed in. Never the desktop itself: its file manager, panel, login and settings.
    [[nodiscard]] virtual std::vector<ApplicationDescription> installedApplications() const = 0;

    /// The apps with windows, each identifier once, in the order in which the desktop tells of them; windows that
    /// belong to no app that is installed or well known are left out. The desktop's own apps, such as a file manager,
    /// are among them; its panel and background aren't.
    [[nodiscard]] virtual std::vector<ApplicationDescription> runningApplications() const = 0;

    /// Hands an http or https address to the user's browser. Whether that one shows it, nobody knows.
    virtual void open(const std::string& url) = 0;
};

} // namespace stillgate
