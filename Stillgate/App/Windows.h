#pragma once

#include "Blocking/BlockModal.h"
#include "Platform/StatusItem.h"

#include <functional>
#include <memory>
#include <optional>
#include <string_view>

namespace stillgate
{

struct WindowDescription
{
    std::string_view id;
    std::string_view title;
    int width;  ///< of the content, in device-independent pixels
    int height; ///< likewise
    int minimumWidth = 360;
    int minimumHeight = 360;
};

/// A window on the screen; destroying it closes it.
class Window
{
public:
    virtual ~Window() = default;

    /// False once the user has closed it.
    [[nodiscard]] virtual bool isVisible() const = 0;

    /// Above the other windows, with the keyboard, in front of other apps as well.
    virtual void bringToFront() = 0;
};

/// The panel that opens from the status item.
class Popover
{
public:
    virtual ~Popover() = default;

    [[nodiscard]] virtual bool isShown() const = 0;

    /// Beside the anchor, with the keyboard; beside the pointer where the desktop doesn't tell where the anchor is. It
    /// closes by itself when the user turns to something else.
    virtual void show(const std::optional<ScreenRectangle>& anchor) = 0;

    virtual void close() = 0;
};

/// What the buttons of a block screen do.
struct BlockModalActions
{
    std::function<void()> onDismiss;
    std::function<void()> onContinue;  ///< none: there is no way on
    std::function<void()> onOpenTasks; ///< none: there is no such button
};

/// Makes what is on the screen. The shell decides what is shown and when; this is how it gets there.
class WindowFactory
{
public:
    virtual ~WindowFactory() = default;

    /// Null for a window that this program doesn't have.
    [[nodiscard]] virtual std::unique_ptr<Window> makeWindow(const WindowDescription& description) = 0;
    [[nodiscard]] virtual std::unique_ptr<Popover> makePopover() = 0;

    /// The settings window, to the front; the tab that it shows stays.
    virtual void showSettings() = 0;

    /// A block screen may soon be needed: what takes time is done now.
    virtual void prepareBlockModal() = 0;

    /// Above all other windows, on the screen that the app is on, with the keyboard. It stays there until it is
    /// destroyed, whatever the desktop and other apps do; an action doesn't close it by itself.
    [[nodiscard]] virtual std::unique_ptr<Window> makeBlockModal(
        const BlockModal& modal, const BlockModalActions& actions) = 0;
};

} // namespace stillgate
