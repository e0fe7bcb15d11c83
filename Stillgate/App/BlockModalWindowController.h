#pragma once

#include "App/Windows.h"
#include "Backend/Backend.h"

namespace stillgate
{

/// The block screen: one at a time, and what follows from its buttons.
class BlockModalWindowController final : public BlockModalPresenter
{
public:
    explicit BlockModalWindowController(Backend& backend)
        : m_backend(backend)
    {}

    /// From now on screens come up in windows of this factory, which outlives the event loop. Without one, as in an
    /// engine without windows, what is blocked is stopped and nothing is shown.
    void showIn(WindowFactory& windows) { m_windows = &windows; }

    void prepare() override;
    void showBlockModal(BlockModal modal, std::function<void()> onDismissAction) override;

    void closeBlockModal() override;

private:
    [[nodiscard]] BlockModalActions actionsFor(const BlockModal& modal);
    void reportBypass(const BlockModal& modal);

    Backend& m_backend;
    WindowFactory* m_windows = nullptr;
    std::unique_ptr<Window> m_window;
    std::function<void()> m_pendingDismissAction;
};

} // namespace stillgate
