#pragma once

#include "App/Windows.h"
#include "Platform/Clock.h"
#include "Views/Windows/Screen.h"

namespace stillgate
{

/// The panel beside the status item. It hides when it loses the keyboard, and on Escape.
class PopoverWindow final : public QObject, public Popover
{
public:
    PopoverWindow(QQmlEngine& engine, Screen screen, const Clock& clock);

    /// Also for a moment after it has lost the keyboard: a panel that takes the keyboard when its icon is clicked hides
    /// the popover before the click arrives, and that click is meant to close it.
    [[nodiscard]] bool isShown() const override;

    void show(const std::optional<ScreenRectangle>& anchor) override;

    void close() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    Screen m_screen; // the view lays it out, and goes first
    QQuickView m_view;
    const Clock& m_clock;
    std::optional<MonotonicTime> m_lostKeyboard;
};

} // namespace stillgate
