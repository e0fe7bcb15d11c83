#pragma once

#include "App/OwnRules.h"
#include "Platform/Host.h"
#include "Platform/NotificationCenter.h"
#include "Platform/Workspace.h"
#include "ScreenTime/UsageTracker.h"
#include "Views/Common/RowsModel.h"
#include "Views/Protection/CreateRuleViewModel.h"
#include "Views/Protection/QuickBlockStatus.h"
#include "Views/Protection/QuickBlockViewModel.h"
#include "Views/Protection/RuleRows.h"

#include <QObject>
#include <qqmlregistration.h>

#include <memory>

namespace stillgate
{

/// What the protection tab works with. All of it outlives the tab.
struct ProtectionServices
{
    AppState& state;
    OwnRules& ownRules;
    AppMonitor& monitor;
    UsageTracker& tracker;
    const Workspace& workspace;
    NotificationCenter& notifications;
    const Clock& clock;
    Scheduler& scheduler;
    const Host& host;
};

/// The user's own rules, what watches over them, and the quick block.
class ProtectionViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made with its tab")

    Q_PROPERTY(QAbstractItemModel* rules READ rules CONSTANT)
    Q_PROPERTY(bool hasRules READ hasRules NOTIFY changed)
    Q_PROPERTY(bool isMonitoring READ isMonitoring NOTIFY changed)
    Q_PROPERTY(QString monitorName READ monitorName NOTIFY changed)
    Q_PROPERTY(QString monitorText READ monitorText NOTIFY changed)
    Q_PROPERTY(bool hasQuickBlock READ hasQuickBlock NOTIFY changed)
    Q_PROPERTY(QString quickBlockText READ quickBlockText NOTIFY changed)
    Q_PROPERTY(stillgate::CreateRuleViewModel* createRule READ createRule NOTIFY sheetChanged)
    Q_PROPERTY(stillgate::QuickBlockViewModel* quickBlock READ quickBlock NOTIFY sheetChanged)
    Q_PROPERTY(bool asksToDelete READ asksToDelete NOTIFY sheetChanged)

public:
    explicit ProtectionViewModel(const ProtectionServices& services);

    [[nodiscard]] QAbstractItemModel* rules() { return &m_rules; }

    [[nodiscard]] bool hasRules() const { return !m_rules.rows().isEmpty(); }

    [[nodiscard]] bool isMonitoring() const { return m_services.monitor.isMonitoring; }

    /// Its name and whether it is on, for those who don't see the colour.
    [[nodiscard]] QString monitorName() const;
    [[nodiscard]] QString monitorText() const;

    [[nodiscard]] bool hasQuickBlock() const { return m_quickBlockStatus.isRunning(); }

    [[nodiscard]] QString quickBlockText() const { return m_quickBlockStatus.textInLowerCase(); }

    // What lies over the window; at most one of them.
    [[nodiscard]] CreateRuleViewModel* createRule() const { return m_createRule.get(); }

    [[nodiscard]] QuickBlockViewModel* quickBlock() const { return m_quickBlock.get(); }

    [[nodiscard]] bool asksToDelete() const { return !m_ruleToDelete.empty(); }

    Q_INVOKABLE void openCreateRule();
    Q_INVOKABLE void openQuickBlock();
    Q_INVOKABLE void askToDelete(const QString& ruleId);
    Q_INVOKABLE void closeSheet();
    Q_INVOKABLE void deleteRule();

    Q_INVOKABLE void endQuickBlock() { m_services.monitor.stopQuickBlock(); }

Q_SIGNALS:
    void changed();
    void sheetChanged();

private:
    void updateRules();
    [[nodiscard]] std::vector<InstalledApp> installedApps() const;

    ProtectionServices m_services;
    RowsModel<RuleRow> m_rules;
    QuickBlockStatus m_quickBlockStatus;
    std::unique_ptr<CreateRuleViewModel> m_createRule;
    std::unique_ptr<QuickBlockViewModel> m_quickBlock;
    std::string m_ruleToDelete;
    std::vector<QPropertyNotifier> m_notifiers;
    std::unique_ptr<Observation> m_showQuickBlock;
};

} // namespace stillgate
