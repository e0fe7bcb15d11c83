#pragma once

#include "Platform/Observers.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace stillgate
{

/// A rectangle of the screen, in device-independent pixels from the upper left corner of all screens.
struct ScreenRectangle
{
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    bool operator==(const ScreenRectangle&) const = default;
};

/// The program's icon in the status area of the desktop.
class StatusItem
{
public:
    struct MenuItem
    {
        std::string title;
        std::function<void()> action;
    };

    virtual ~StatusItem() = default;

    /// Shows the icon with the text that assistive technology reads; the menu comes with the secondary button. On a
    /// desktop without a status area it comes up once there is one.
    virtual void show(const std::string& accessibilityText, std::vector<MenuItem> menu) = 0;

    /// Called when the user clicks the icon.
    [[nodiscard]] virtual std::unique_ptr<Observation> onClick(std::function<void()> observer) = 0;

    /// Where the icon stands; nothing if this desktop doesn't tell.
    [[nodiscard]] virtual std::optional<ScreenRectangle> bounds() const = 0;
};

} // namespace stillgate
