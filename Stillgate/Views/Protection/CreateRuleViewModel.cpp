#include "Views/Protection/CreateRuleViewModel.h"

#include "Views/Common/TextOf.h"
#include "Views/Protection/EnteredDomains.h"

#include <QUuid>

namespace stillgate
{

namespace
{

constexpr struct
{
    const char* key;
    const char* glyph;
    const char* name;
} categoryTable[] = {
    {"social_media", "💬", "onboarding.categories.socialMedia"},
    {"gaming", "🎮", "onboarding.categories.games"},
    {"streaming", "📺", "onboarding.categories.entertainment"},
    {"gambling", "🎰", "web.categories.gambling"},
    {"shopping", "🛍️", "onboarding.categories.shopping"},
    {"adult", "🔞", "onboarding.categories.adult"},
    {"news", "📰", "web.categories.news"},
    {"custom", "⚙️", "onboarding.categories.custom"},
};

constexpr struct
{
    const char* symbol;
    const char* name;
} blockModeTable[] = {
    {"app.fill", "desktop.quickBlock.apps"},
    {"globe", "desktop.quickBlock.websites"},
};

constexpr struct
{
    const char* key;
    const char* symbol;
    const char* title;
    const char* description;
} policyTable[] = {
    {"flexible", "lock.open.fill", "controller.flexible", "controller.flexibleDesc"},
    {"cooldown", "clock.fill", "desktop.createRule.cooldownPeriod", "desktop.createRule.cooldownPeriodDesc"},
    {"permanent", "lock.fill", "controller.permanent", "controller.permanentDesc"},
    {"group_approval", "person.2.fill", "desktop.createRule.groupApproval", "desktop.createRule.groupApprovalDesc"},
};

constexpr std::int64_t cooldownTable[] = {1, 2, 4, 8, 24, 48}; // hours

constexpr struct
{
    const char* title;
    const char* subtitle;
} stepTable[CreateRuleViewModel::lastStep] = {
    {"desktop.createRule.step1Title", "desktop.createRule.step1Desc"},
    {"desktop.createRule.step2Title", "desktop.createRule.step2Desc"},
    {"desktop.createRule.step3Title", "desktop.createRule.step3Desc"},
};

} // namespace

CreateRuleViewModel::CreateRuleViewModel(
    OwnRules& ownRules, const Clock& clock, std::vector<InstalledApp> installedApps)
    : m_ownRules(ownRules)
    , m_clock(clock)
    , m_picker(std::move(installedApps))
{
    connect(&m_picker, &AppPickerModel::changed, this, &CreateRuleViewModel::changed);
    connect(this, &CreateRuleViewModel::stepChanged, this, &CreateRuleViewModel::changed);
}

QString CreateRuleViewModel::title() const
{
    return textOf(stepTable[m_step - 1].title);
}

QString CreateRuleViewModel::subtitle() const
{
    return textOf(stepTable[m_step - 1].subtitle);
}

bool CreateRuleViewModel::canGoOn() const
{
    if (m_step == 2)
        return !blocksApps() || !m_picker.selectedApps().empty() || !m_customDomains.trimmed().isEmpty();
    return !m_isCreating;
}

QList<Choice> CreateRuleViewModel::categories()
{
    QList<Choice> choices;
    for (const auto& category : categoryTable)
        choices.push_back({.glyph = QString::fromUtf8(category.glyph), .title = textOf(category.name)});
    return choices;
}

void CreateRuleViewModel::selectCategory(int index)
{
    m_category = index;
    Q_EMIT changed();
}

bool CreateRuleViewModel::asksForName() const
{
    return categoryTable[m_category].key == std::string_view{"custom"};
}

QList<Choice> CreateRuleViewModel::blockModes()
{
    QList<Choice> choices;
    for (const auto& mode : blockModeTable)
        choices.push_back({.symbol = mode.symbol, .title = textOf(mode.name)});
    return choices;
}

void CreateRuleViewModel::selectBlockMode(int index)
{
    m_blockMode = index;
    Q_EMIT changed();
}

QList<Choice> CreateRuleViewModel::policies()
{
    QList<Choice> choices;
    for (const auto& policy : policyTable)
        choices.push_back(
            {.symbol = policy.symbol, .title = textOf(policy.title), .description = textOf(policy.description)});
    return choices;
}

void CreateRuleViewModel::selectPolicy(int index)
{
    m_policy = index;
    Q_EMIT changed();
}

bool CreateRuleViewModel::asksForCooldown() const
{
    return policyTable[m_policy].key == std::string_view{"cooldown"};
}

QStringList CreateRuleViewModel::cooldowns()
{
    QStringList labels;
    for (const auto hours : cooldownTable)
        labels << QString::number(hours) + 'h';
    return labels;
}

void CreateRuleViewModel::selectCooldown(int index)
{
    m_cooldown = index;
    Q_EMIT changed();
}

QList<Choice> CreateRuleViewModel::summary() const
{
    const auto amount = blocksApps()
        ? counted(std::ssize(m_picker.selectedApps()), "desktop.quickBlock.apps")
        : counted(std::ssize(enteredDomains(m_customDomains)), "desktop.quickBlock.websites");
    return {
        {.symbol = "tag", .title = textOf(categoryTable[m_category].name)},
        {.symbol = blocksApps() ? "app" : "globe", .title = amount},
        {.symbol = "lock", .title = textOf(policyTable[m_policy].title)},
    };
}

void CreateRuleViewModel::goOn()
{
    if (!canGoOn())
        return;
    if (m_step < lastStep)
        setStep(m_step + 1);
    else
        createRule();
}

void CreateRuleViewModel::goBack()
{
    if (m_step > 1)
        setStep(m_step - 1);
}

void CreateRuleViewModel::setStep(int step)
{
    m_step = step;
    Q_EMIT stepChanged();
}

void CreateRuleViewModel::createRule()
{
    m_isCreating = true;
    Q_EMIT changed();
    runDetached(m_ownRules.addRule(newRule()));
    Q_EMIT created();
}

BlockRule CreateRuleViewModel::newRule() const
{
    BlockRule rule{
        .id = QUuid::createUuid().toString(QUuid::WithoutBraces).toStdString(),
        .category = categoryTable[m_category].key,
        .enabled = true,
        .unblockPolicy = policyTable[m_policy].key,
        .createdAt = m_clock.now(),
    };
    if (asksForName())
        rule.customName = m_customName.toStdString();
    if (!blocksApps())
        rule.customDomains = enteredDomains(m_customDomains);
    else if (!m_picker.selectedApps().empty())
        rule.customApps = AppsByPlatform{{ownPlatform, selectedApps()}};
    if (asksForCooldown())
        rule.cooldownHours = cooldownTable[m_cooldown];
    return rule;
}

std::vector<AppInfo> CreateRuleViewModel::selectedApps() const
{
    std::vector<AppInfo> apps;
    for (const auto& bundleId : m_picker.selectedApps())
        apps.push_back({.bundleId = bundleId, .name = m_picker.nameOf(bundleId)});
    return apps;
}

} // namespace stillgate
