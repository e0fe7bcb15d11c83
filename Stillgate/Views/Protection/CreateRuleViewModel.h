#pragma once

#include "App/OwnRules.h"
#include "DesignSystem/Styles.h"
#include "Platform/Clock.h"
#include "Views/AppPicker/AppPickerModel.h"

#include <QObject>
#include <QStringList>
#include <qqmlregistration.h>

namespace stillgate
{

/// The sheet in which a rule is written, in three steps: what kind of distraction, what exactly, and how firmly. Going
/// back keeps every entry.
class CreateRuleViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the protection tab")

    Q_PROPERTY(int step READ step NOTIFY stepChanged)
    Q_PROPERTY(QString title READ title NOTIFY stepChanged)
    Q_PROPERTY(QString subtitle READ subtitle NOTIFY stepChanged)
    Q_PROPERTY(bool canGoOn READ canGoOn NOTIFY changed)

    Q_PROPERTY(QList<stillgate::Choice> categories READ categories CONSTANT)
    Q_PROPERTY(int selectedCategory READ selectedCategory WRITE selectCategory NOTIFY changed)
    Q_PROPERTY(bool asksForName READ asksForName NOTIFY changed)
    Q_PROPERTY(QString customName MEMBER m_customName NOTIFY changed)

    Q_PROPERTY(QList<stillgate::Choice> blockModes READ blockModes CONSTANT)
    Q_PROPERTY(int blockMode READ blockMode WRITE selectBlockMode NOTIFY changed)
    Q_PROPERTY(bool blocksApps READ blocksApps NOTIFY changed)
    Q_PROPERTY(stillgate::AppPickerModel* picker READ picker CONSTANT)
    Q_PROPERTY(QString customDomains MEMBER m_customDomains NOTIFY changed)

    Q_PROPERTY(QList<stillgate::Choice> policies READ policies CONSTANT)
    Q_PROPERTY(int selectedPolicy READ selectedPolicy WRITE selectPolicy NOTIFY changed)
    Q_PROPERTY(bool asksForCooldown READ asksForCooldown NOTIFY changed)
    Q_PROPERTY(QList<QString> cooldowns READ cooldowns CONSTANT)
    Q_PROPERTY(int selectedCooldown READ selectedCooldown WRITE selectCooldown NOTIFY changed)

    Q_PROPERTY(QList<stillgate::Choice> summary READ summary NOTIFY changed)
    Q_PROPERTY(bool isCreating READ isCreating NOTIFY changed)

public:
    static constexpr int lastStep = 3;

    CreateRuleViewModel(OwnRules& ownRules, const Clock& clock, std::vector<InstalledApp> installedApps);

    [[nodiscard]] int step() const { return m_step; }

    [[nodiscard]] QString title() const;
    [[nodiscard]] QString subtitle() const;

    /// A rule about apps needs an app, or sites that were entered before.
    [[nodiscard]] bool canGoOn() const;

    [[nodiscard]] static QList<Choice> categories();

    [[nodiscard]] int selectedCategory() const { return m_category; }

    void selectCategory(int index);
    [[nodiscard]] bool asksForName() const;

    [[nodiscard]] static QList<Choice> blockModes();

    /// 0: apps, 1: sites.
    [[nodiscard]] int blockMode() const { return m_blockMode; }

    void selectBlockMode(int index);

    [[nodiscard]] bool blocksApps() const { return m_blockMode == 0; }

    [[nodiscard]] AppPickerModel* picker() { return &m_picker; }

    [[nodiscard]] static QList<Choice> policies();

    [[nodiscard]] int selectedPolicy() const { return m_policy; }

    void selectPolicy(int index);
    [[nodiscard]] bool asksForCooldown() const;

    [[nodiscard]] static QStringList cooldowns();

    [[nodiscard]] int selectedCooldown() const { return m_cooldown; }

    void selectCooldown(int index);

    /// Category, amount, and policy, each with its symbol.
    [[nodiscard]] QList<Choice> summary() const;

    [[nodiscard]] bool isCreating() const { return m_isCreating; }

    /// To the next step, or, on the last one, the rule is made: it is in force before this returns.
    Q_INVOKABLE void goOn();
    Q_INVOKABLE void goBack();

Q_SIGNALS:
    void stepChanged();
    void changed();
    void created();

private:
    void setStep(int step);
    void createRule();
    [[nodiscard]] BlockRule newRule() const;
    [[nodiscard]] std::vector<AppInfo> selectedApps() const;

    OwnRules& m_ownRules;
    const Clock& m_clock;
    int m_step = 1;
    int m_category = 0;
    QString m_customName;
    int m_blockMode = 0;
    AppPickerModel m_picker;
    QString m_customDomains;
    int m_policy = 0;
    int m_cooldown = 4; ///< 24 hours
    bool m_isCreating = false;
};

} // namespace stillgate
