#pragma once

#include "Platform/ScreenRectangle.h"

#include <functional>
#include <optional>
#include <string>

namespace stillgate
{

/// Why something is stopped.
enum class MacBlockVariant {
    app,
    website,
    sleep, ///< an app, at night
    family,
    budget, ///< the day's allowance is used up
};

/// What a block screen is about.
struct BlockModal
{
    MacBlockVariant variant = MacBlockVariant::app;
    std::string appName;
    std::optional<std::string> domain; ///< of a website
    std::optional<std::string> session;
    std::optional<std::string> category;
    std::optional<std::string> guardianMessage;
    std::optional<std::string> illustrationOverride; ///< name of an illustration
    bool allowBypass = false;                        ///< the user may go on, after a confirmation
    std::optional<ScreenRectangle> place;            ///< of the app's window, in pixels of the screen

    bool operator==(const BlockModal&) const = default;
};

/// Where a block screen comes up. Main thread only.
class BlockModalPresenter
{
public:
    virtual ~BlockModalPresenter() = default;

    /// A screen may soon be needed: what takes time is done now.
    virtual void prepare() = 0;

    /// Takes the place of one that is up, whose action is not run any more. The action is run when the screen ends, by
    /// a button of its own or by `closeBlockModal`; at once where no screen can be shown.
    virtual void showBlockModal(BlockModal modal, std::function<void()> onDismissAction) = 0;

    /// Ends the screen that is up, if there is one.
    virtual void closeBlockModal() = 0;
};

} // namespace stillgate
