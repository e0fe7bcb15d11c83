#include "Views/Protection/ProtectionViewModel.h"

#include "Views/Common/Follow.h"
#include "Views/Common/TextOf.h"

#include <algorithm>
#include <utility>

namespace stillgate
{

namespace
{

/// The sheet is still on its way out, and shows what the view model says until then.
template <class ViewModel>
void releaseLater(std::unique_ptr<ViewModel>& viewModel)
{
    if (viewModel)
        viewModel.release()->deleteLater();
}

} // namespace

ProtectionViewModel::ProtectionViewModel(const ProtectionServices& services)
    : m_services(services)
    , m_quickBlockStatus(services.monitor, services.clock, services.scheduler, [this] { Q_EMIT changed(); })
    , m_showQuickBlock(services.notifications.observe(sgShowQuickBlock, [this] {
        if (!m_createRule && !m_quickBlock) // what somebody is writing stays
            openQuickBlock();
    }))
{
    m_notifiers =
        follow([this] { Q_EMIT changed(); }, services.monitor.isMonitoring, services.monitor.blockedAppAttempts);
    m_notifiers.push_back(services.state.blockRules.addNotifier([this] { updateRules(); }));
    updateRules();
}

QString ProtectionViewModel::monitorName() const
{
    return textOf("desktop.protection.processMonitor") + ": " +
        textOf(isMonitoring() ? "common.active" : "common.inactive");
}

QString ProtectionViewModel::monitorText() const
{
    return QString{"8 %1 · %2 %3"}
        .arg(lowerCaseTextOf("desktop.quickBlock.apps"))
        .arg(m_services.monitor.blockedAppAttempts.value())
        .arg(lowerCaseTextOf("desktop.menuBar.sitesShielded"));
}

void ProtectionViewModel::openCreateRule()
{
    closeSheet();
    m_createRule = std::make_unique<CreateRuleViewModel>(m_services.ownRules, m_services.clock, installedApps());
    connect(m_createRule.get(), &CreateRuleViewModel::created, this, &ProtectionViewModel::closeSheet);
    Q_EMIT sheetChanged();
}

void ProtectionViewModel::openQuickBlock()
{
    closeSheet();
    m_quickBlock =
        std::make_unique<QuickBlockViewModel>(m_services.monitor, m_services.clock, m_services.host, installedApps());
    connect(m_quickBlock.get(), &QuickBlockViewModel::started, this, &ProtectionViewModel::closeSheet);
    Q_EMIT sheetChanged();
}

void ProtectionViewModel::askToDelete(const QString& ruleId)
{
    closeSheet();
    m_ruleToDelete = ruleId.toStdString();
    Q_EMIT sheetChanged();
}

void ProtectionViewModel::closeSheet()
{
    m_ruleToDelete.clear();
    auto createRule = std::exchange(m_createRule, nullptr);
    auto quickBlock = std::exchange(m_quickBlock, nullptr);
    Q_EMIT sheetChanged();
    releaseLater(createRule);
    releaseLater(quickBlock);
}

void ProtectionViewModel::deleteRule()
{
    const auto id = m_ruleToDelete;
    closeSheet();
    runDetached(m_services.ownRules.deleteRule(id));
}

void ProtectionViewModel::updateRules()
{
    QList<RuleRow> rows;
    for (const auto& rule : m_services.state.blockRules.value())
        rows.push_back(ruleRow(rule, m_services.state.domainsOfCategory(rule.category.value_or(""))));
    const bool isGone =
        asksToDelete() && std::ranges::count(rows, QString::fromStdString(m_ruleToDelete), &RuleRow::id) == 0;
    m_rules.setRows(std::move(rows));
    if (isGone)
        closeSheet();
    Q_EMIT changed();
}

std::vector<InstalledApp> ProtectionViewModel::installedApps() const
{
    return scanInstalledApps(m_services.workspace, m_services.tracker.usageToday());
}

} // namespace stillgate
