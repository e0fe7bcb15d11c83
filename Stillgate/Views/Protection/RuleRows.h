#pragma once

#include "Models/BlockRules.h"

#include <QColor>
#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <qqmlregistration.h>

#include <span>

namespace stillgate
{

/// Some of what a rule blocks: sites, or apps.
struct RuleSection
{
    Q_GADGET
    QML_VALUE_TYPE(ruleSection)
    Q_PROPERTY(QString symbol MEMBER symbol CONSTANT)
    Q_PROPERTY(QString title MEMBER title CONSTANT)
    Q_PROPERTY(QStringList entries MEMBER entries CONSTANT)
    Q_PROPERTY(QString more MEMBER more CONSTANT)

public:
    QString symbol;
    QString title;
    QStringList entries; ///< the first few
    QString more;        ///< how many are left out; empty for none

    bool operator==(const RuleSection&) const = default;
};

/// A rule as a list shows it, folded and unfolded.
struct RuleRow
{
    Q_GADGET
    QML_VALUE_TYPE(ruleRow)
    Q_PROPERTY(QString id MEMBER id CONSTANT)
    Q_PROPERTY(QString symbol MEMBER symbol CONSTANT)
    Q_PROPERTY(QColor color MEMBER color CONSTANT)
    Q_PROPERTY(QString title MEMBER title CONSTANT)
    Q_PROPERTY(QString subtitle MEMBER subtitle CONSTANT)
    Q_PROPERTY(QString policy MEMBER policy CONSTANT)
    Q_PROPERTY(QString policyName MEMBER policyName CONSTANT)
    Q_PROPERTY(QString cooldown MEMBER cooldown CONSTANT)
    Q_PROPERTY(QList<stillgate::RuleSection> sections MEMBER sections CONSTANT)
    Q_PROPERTY(bool blocksNothing MEMBER blocksNothing CONSTANT)

public:
    QString id;
    QString symbol;
    QColor color;
    QString title;
    QString subtitle;
    QString policy; ///< as the server has it
    QString policyName;
    QString cooldown; ///< "24h"; empty where there is no waiting time
    QList<RuleSection> sections;
    bool blocksNothing = false;

    bool operator==(const RuleRow&) const = default;
};

/// `blockList`: the domains that the rule's category stands for.
[[nodiscard]] RuleRow ruleRow(const BlockRule& rule, std::span<const std::string> blockList);

} // namespace stillgate
