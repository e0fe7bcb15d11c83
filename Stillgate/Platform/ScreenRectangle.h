#pragma once

namespace stillgate
{

/// A rectangle on the screens, from the upper left corner of all of them.
struct ScreenRectangle
{
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    bool operator==(const ScreenRectangle&) const = default;
};

} // namespace stillgate
