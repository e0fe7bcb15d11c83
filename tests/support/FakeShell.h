#pragma once

#include "App/Windows.h"
#include "Platform/StatusItem.h"

#include <algorithm>
#include <string>
#include <vector>

namespace stillgate::test
{

/// A screen of which a test sees what stands on it. Windows can't be made until `hasScreen`.
class FakeWindowFactory final : public WindowFactory
{
public:
    std::unique_ptr<Window> makeWindow(const WindowDescription& description) override
    {
        made.emplace_back(description.id);
        if (!hasScreen)
            return nullptr;
        return std::make_unique<FakeWindow>(onScreen, std::string{description.id});
    }

    std::unique_ptr<Popover> makePopover() override
    {
        ++popovers;
        return std::make_unique<FakePopover>(popoverIsShown, popoverAnchor);
    }

    void showSettings() override { settings.emplace_back("shown"); }

    void prepareBlockModal() override { isPrepared = true; }

    std::unique_ptr<Window> makeBlockModal(const BlockModal& modal, const BlockModalActions& actions) override
    {
        blockModals.push_back(modal);
        blockModalActions = actions;
        return std::make_unique<FakeWindow>(onScreen, "block");
    }

    void closeByHand(const std::string& id) { std::erase(onScreen, id); }

    bool hasScreen = false;
    std::vector<std::string> onScreen; ///< ids of the windows that are visible, the one in front last
    std::vector<std::string> made;     ///< every id that was asked for

    int popovers = 0;
    bool popoverIsShown = false;
    std::optional<ScreenRectangle> popoverAnchor;

    std::vector<std::string> settings; ///< what has happened to the settings window

    bool isPrepared = false;             ///< for a block screen
    std::vector<BlockModal> blockModals; ///< every one that was made
    BlockModalActions blockModalActions; ///< of the last
private:
    class FakeWindow final : public Window
    {
    public:
        FakeWindow(std::vector<std::string>& onScreen, std::string id)
            : m_onScreen(onScreen)
            , m_id(std::move(id))
        {}

        ~FakeWindow() override { std::erase(m_onScreen, m_id); }

        FakeWindow(const FakeWindow&) = delete;
        FakeWindow& operator=(const FakeWindow&) = delete;

        [[nodiscard]] bool isVisible() const override { return std::ranges::count(m_onScreen, m_id) > 0; }

        void bringToFront() override
        {
            std::erase(m_onScreen, m_id);
            m_onScreen.push_back(m_id);
        }

    private:
        std::vector<std::string>& m_onScreen;
        std::string m_id;
    };

    class FakePopover final : public Popover
    {
    public:
        FakePopover(bool& isShown, std::optional<ScreenRectangle>& anchor)
            : m_isShown(isShown)
            , m_anchor(anchor)
        {}

        [[nodiscard]] bool isShown() const override { return m_isShown; }

        void show(const std::optional<ScreenRectangle>& anchor) override
        {
            m_isShown = true;
            m_anchor = anchor;
        }

        void close() override { m_isShown = false; }

    private:
        bool& m_isShown;
        std::optional<ScreenRectangle>& m_anchor;
    };
};

/// An icon that a test clicks.
class FakeStatusItem final : public StatusItem
{
public:
    void show(const std::string& accessibilityText, std::vector<MenuItem> newMenu) override
    {
        text = accessibilityText;
        menu = std::move(newMenu);
    }

    std::unique_ptr<Observation> onClick(std::function<void()> observer) override
    {
        return m_observers.add(std::move(observer));
    }

    [[nodiscard]] std::optional<ScreenRectangle> bounds() const override { return place; }

    void click() { m_observers.notify(); }

    /// As if the user chose this line of the menu.
    void choose(const std::string& title) const
    {
        std::ranges::find(menu, title, &MenuItem::title)->action(); // a test names a line that is there
    }

    std::string text; ///< empty until the icon is shown
    std::vector<MenuItem> menu;
    std::optional<ScreenRectangle> place;

private:
    Observers<> m_observers;
};

} // namespace stillgate::test
