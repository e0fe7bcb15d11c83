#include "App/BlockModalWindowController.h"

#include "Localization/L.h"

#include <utility>

namespace stillgate
{

void BlockModalWindowController::prepare()
{
    if (m_windows != nullptr)
        m_windows->prepareBlockModal();
}

void BlockModalWindowController::showBlockModal(BlockModal modal, std::function<void()> onDismissAction)
{
    m_window.reset();
    m_pendingDismissAction = std::move(onDismissAction);
    if (m_windows == nullptr) {
        closeBlockModal();
        return;
    }
    m_window = m_windows->makeBlockModal(modal, actionsFor(modal));
    m_window->bringToFront();
}

void BlockModalWindowController::closeBlockModal()
{
    const auto action = std::exchange(m_pendingDismissAction, nullptr);
    m_window.reset();
    if (action)
        action();
}

BlockModalActions BlockModalWindowController::actionsFor(const BlockModal& modal)
{
    BlockModalActions actions{.onDismiss = [this] { closeBlockModal(); }};
    const bool isBudget = modal.variant == MacBlockVariant::budget;
    if (isBudget)
        actions.onOpenTasks = [this] {
            closeBlockModal();
            m_windows->showSettings();
        };
    else if (modal.allowBypass)
        actions.onContinue = [this, modal] {
            if (modal.guardianMessage)
                reportBypass(modal);
            closeBlockModal();
        };
    return actions;
}

void BlockModalWindowController::reportBypass(const BlockModal& modal)
{
    runDetached(
        m_backend.reportTampering("bypass_attempt", L.localized("blockScreen.continue") + " — " + modal.appName));
}

} // namespace stillgate
