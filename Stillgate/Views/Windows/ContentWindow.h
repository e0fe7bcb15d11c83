#pragma once

#include "App/Windows.h"
#include "Views/Windows/Screen.h"

#include <functional>

namespace stillgate
{

/// An ordinary window with one screen in it, as large as the screen of the machine lets it be.
class ContentWindow final : public Window
{
public:
    ContentWindow(QQmlEngine& engine, const WindowDescription& description, Screen screen);

    [[nodiscard]] bool isVisible() const override { return m_view.isVisible(); }

    void bringToFront() override;

    /// Called once after the user has closed it; the window may be destroyed in the call.
    void onClose(std::function<void()> action);

private:
    Screen m_screen; // the view lays it out, and goes first
    QQuickView m_view;
};

} // namespace stillgate
