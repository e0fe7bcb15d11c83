#pragma once

#include "Platform/Observers.h"
#include "Platform/ScreenRectangle.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace stillgate
{

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

    /// Where the icon stands, in device-independent pixels; nothing if this desktop doesn't tell.
    [[nodiscard]] virtual std::optional<ScreenRectangle> bounds() const = 0;
};

} // namespace stillgate
