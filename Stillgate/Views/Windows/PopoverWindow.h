#pragma once

#include "App/Windows.h"
#include "Views/Windows/Screen.h"

namespace stillgate
{

/// The panel beside the status item. It hides when it loses the keyboard, and on Escape.
class PopoverWindow final : public QObject, public Popover
{
public:
    PopoverWindow(QQmlEngine& engine, Screen screen);

    [[nodiscard]] bool isShown() const override { return m_view.isVisible(); }

    void show(const std::optional<ScreenRectangle>& anchor) override;

    void close() override { m_view.hide(); }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    Screen m_screen; // the view lays it out, and goes first
    QQuickView m_view;
};

} // namespace stillgate
