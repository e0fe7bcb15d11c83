#pragma once

#include <QRect>

namespace stillgate
{

/// Where a panel of this size goes: centred on the anchor, below it, or above it where there is no room below, and
/// always within the available part of the screen.
[[nodiscard]] inline QRect popoverPlace(const QRect& anchor, const QRect& available, const QSize& size)
{
    constexpr int gap = 6;
    const int left = anchor.center().x() - size.width() / 2;
    const int below = anchor.bottom() + 1 + gap;
    const int above = anchor.top() - gap - size.height();
    const bool fitsBelow = below + size.height() <= available.bottom() + 1;
    const int rightmost = available.right() + 1 - size.width();
    const int lowest = available.bottom() + 1 - size.height();
    // The upper left corner wins where the panel is larger than the screen.
    return {std::max(std::min(left, rightmost), available.left()),
        std::max(std::min(fitsBelow ? below : above, lowest), available.top()), size.width(), size.height()};
}

} // namespace stillgate
