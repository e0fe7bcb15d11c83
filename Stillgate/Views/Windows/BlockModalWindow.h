#pragma once

#include "App/Windows.h"
#include "Platform/WindowStacking.h"
#include "Views/Windows/Screen.h"

namespace stillgate
{

/// A block screen: a card in the middle of the screen that the app is on. No close request reaches it, and the window
/// manager has no hold on it.
///
/// What destroys it may come from one of its own buttons: window and view model go with the next turn of the event
/// loop.
class BlockModalWindow final : public Window
{
public:
    using ScreenFactory = std::function<Screen()>;

    /// `makeScreen` is called again when somebody else has destroyed the window.
    BlockModalWindow(
        QQmlEngine& engine, ScreenFactory makeScreen, std::optional<ScreenRectangle> place, WindowStacking& stacking);
    ~BlockModalWindow() override;

    BlockModalWindow(const BlockModalWindow&) = delete;
    BlockModalWindow& operator=(const BlockModalWindow&) = delete;

    [[nodiscard]] bool isVisible() const override;

    void bringToFront() override;

private:
    class View;

    void makeView();
    void dropView();

    QQmlEngine& m_engine;
    ScreenFactory m_makeScreen;
    std::optional<ScreenRectangle> m_place;
    WindowStacking& m_stacking;
    View* m_view = nullptr; // goes by deleteLater()
    std::unique_ptr<Observation> m_keptInFront;
};

} // namespace stillgate
