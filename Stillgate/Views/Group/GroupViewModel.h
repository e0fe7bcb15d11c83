#pragma once

#include "Backend/Backend.h"
#include "Views/Common/RowsModel.h"

#include <QList>
#include <QObject>
#include <qqmlregistration.h>

namespace stillgate
{

/// A member of the group, as the others see them.
struct GroupMember
{
    Q_GADGET
    QML_VALUE_TYPE(groupMember)
    Q_PROPERTY(QString initial MEMBER initial CONSTANT)
    Q_PROPERTY(QString name MEMBER name CONSTANT)
    Q_PROPERTY(QString role MEMBER role CONSTANT)
    Q_PROPERTY(QString streak MEMBER streak CONSTANT)
    Q_PROPERTY(QString activeRules MEMBER activeRules CONSTANT)
    Q_PROPERTY(QString screenTime MEMBER screenTime CONSTANT)

public:
    QString initial;
    QString name;
    QString role; ///< in the user's language
    QString streak;
    QString activeRules;
    QString screenTime; ///< today's

    bool operator==(const GroupMember&) const = default;
};

[[nodiscard]] GroupMember groupMember(const GroupDashboardEntry& entry);

/// Members that stand side by side: two, or the last one.
struct GroupRow
{
    Q_GADGET
    QML_VALUE_TYPE(groupRow)
    Q_PROPERTY(QList<stillgate::GroupMember> members MEMBER members CONSTANT)

public:
    QString id; ///< of the first
    QList<GroupMember> members;

    bool operator==(const GroupRow&) const = default;
};

/// The members of the user's group, in the order of the server. They load when it is made; a failure looks like a group
/// of nobody.
class GroupViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made with its tab")

    Q_PROPERTY(QAbstractItemModel* rows READ rows CONSTANT)
    Q_PROPERTY(QString countText READ countText NOTIFY changed)
    Q_PROPERTY(bool isLoading READ isLoading NOTIFY changed)
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY changed)

public:
    static constexpr int columns = 2;

    explicit GroupViewModel(Backend& backend);

    [[nodiscard]] QAbstractItemModel* rows() { return &m_rows; }

    [[nodiscard]] QString countText() const;

    [[nodiscard]] bool isLoading() const { return m_isLoading; }

    [[nodiscard]] bool isEmpty() const { return m_memberCount == 0; }

Q_SIGNALS:
    void changed();

private:
    void show(const std::vector<GroupDashboardEntry>& members);

    RowsModel<GroupRow> m_rows;
    std::size_t m_memberCount = 0;
    bool m_isLoading = true;
};

} // namespace stillgate
