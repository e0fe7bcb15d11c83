#include "Views/BlockScreen/BlockModalViewModel.h"

#include "Views/BlockScreen/BlockIllustrations.h"
#include "Views/Common/Illustrations.h"
#include "Views/Common/TextOf.h"

#include <algorithm>

namespace stillgate
{

namespace
{

/// Minutes of the bar on a budget's screen.
constexpr int budgetUsed = 0;
constexpr int budgetTotal = 1;

struct CategoryText
{
    std::string_view category;
    const char* key;
};

constexpr CategoryText categoryTexts[] = {
    {"gambling", "blockScreenMotivation.gambling"},
    {"social_media", "blockScreenMotivation.socialMedia"},
    {"gaming", "blockScreenMotivation.gaming"},
    {"adult", "blockScreenMotivation.adult"},
    {"streaming", "blockScreenMotivation.streaming"},
    {"shopping", "blockScreenMotivation.shopping"},
    {"news", "blockScreenMotivation.news"},
};

QString variantTitle(const BlockModal& modal)
{
    switch (modal.variant) {
    case MacBlockVariant::app:
        return textOf("blockScreen.appBlocked", {{"appName", modal.appName}});
    case MacBlockVariant::website:
        return textOf("blockScreen.siteBlocked");
    case MacBlockVariant::sleep:
        return textOf("blockScreen.sleepTime");
    case MacBlockVariant::family:
        return textOf("blockScreen.familyTime");
    case MacBlockVariant::budget:
        return textOf("blockScreenMotivation.budget");
    }
    return {};
}

QString variantSubtitle(const BlockModal& modal)
{
    switch (modal.variant) {
    case MacBlockVariant::app:
        return textOf("blockScreenMotivation.genericApp");
    case MacBlockVariant::website: {
        const auto text = textOf("blockScreenMotivation.genericSite");
        return modal.domain ? textOf("blockScreen.siteBlocked") + "\n" + text : text;
    }
    case MacBlockVariant::sleep:
        return textOf("blockScreenMotivation.sleep");
    case MacBlockVariant::family:
        return textOf("blockScreenMotivation.family");
    case MacBlockVariant::budget:
        return textOf("blockScreenMotivation.budget");
    }
    return {};
}

QString subtitleOf(const BlockModal& modal)
{
    if (modal.guardianMessage && !modal.guardianMessage->empty())
        return QString::fromStdString(*modal.guardianMessage);
    for (const auto& [category, key] : categoryTexts) {
        if (modal.category == category)
            return textOf(key);
    }
    return variantSubtitle(modal);
}

} // namespace

BlockModalViewModel::BlockModalViewModel(
    BlockModal modal, BlockModalActions actions, int hour, const std::filesystem::path& bundle)
    : m_modal(std::move(modal))
    , m_actions(std::move(actions))
    , m_illustration(illustrationAddress(bundle, illustrationName(m_modal, hour)))
{}

QString BlockModalViewModel::symbol() const
{
    switch (m_modal.variant) {
    case MacBlockVariant::app:
        return "desktopcomputer";
    case MacBlockVariant::website:
        return "globe";
    case MacBlockVariant::sleep:
        return "moon.zzz.fill";
    case MacBlockVariant::family:
        return "figure.2.and.child.holdinghands";
    case MacBlockVariant::budget:
        return "hourglass";
    }
    return {};
}

QString BlockModalViewModel::title() const
{
    return variantTitle(m_modal);
}

QString BlockModalViewModel::subtitle() const
{
    return subtitleOf(m_modal);
}

QString BlockModalViewModel::sessionName() const
{
    return QString::fromStdString(m_modal.session.value_or(""));
}

bool BlockModalViewModel::hasBudget() const
{
    return m_modal.variant == MacBlockVariant::budget && budgetTotal >= 1;
}

double BlockModalViewModel::budgetShare() const
{
    return std::min(1.0, static_cast<double>(budgetUsed) / std::max(1, budgetTotal));
}

QString BlockModalViewModel::budgetText() const
{
    const auto used = textOf("controller.used");
    return QString{"%1m / %2m %3"}.arg(budgetUsed).arg(budgetTotal).arg(used);
}

QString BlockModalViewModel::primaryTitle() const
{
    switch (m_modal.variant) {
    case MacBlockVariant::website:
        return textOf("blockScreen.goBack");
    case MacBlockVariant::family:
        return textOf("blockScreenMotivation.gotIt");
    default:
        return textOf("blockScreenMotivation.okUnderstand");
    }
}

bool BlockModalViewModel::canContinue() const
{
    return m_modal.variant != MacBlockVariant::budget && m_modal.allowBypass && m_actions.onContinue != nullptr;
}

QString BlockModalViewModel::notice() const
{
    return textOf(isNoticeOfGuardian() ? "blockScreenMotivation.guardianNotified" : "blockScreen.streakWillBreak");
}

void BlockModalViewModel::openTasks()
{
    if (m_actions.onOpenTasks)
        m_actions.onOpenTasks();
}

void BlockModalViewModel::continueAnyway()
{
    if (canContinue() && m_showConfirm)
        m_actions.onContinue();
}

void BlockModalViewModel::setShowConfirm(bool show)
{
    if (m_showConfirm == show)
        return;
    m_showConfirm = show;
    Q_EMIT showConfirmChanged();
}

} // namespace stillgate
