#include "Views/Group/GroupViewModel.h"

#include "Views/Common/FirstCharacter.h"
#include "Views/Common/Minutes.h"
#include "Views/Common/TextOf.h"
#include "Views/Common/WhenDone.h"

#include <QLocale>

namespace stillgate
{

namespace
{

constexpr auto ownGroup = "default"; // the only one that this application knows

QString initialOf(const QString& name)
{
    return name.isEmpty() ? "?" : QLocale().toUpper(firstCharacter(name));
}

} // namespace

GroupMember groupMember(const GroupDashboardEntry& entry)
{
    const auto name = QString::fromStdString(entry.displayName.value_or(""));
    return {
        .initial = initialOf(name),
        .name = name.isEmpty() ? textOf("errors.notFound") : name,
        .role = textOf("groups.roles." + entry.role),
        .streak = QString{"%1d"}.arg(entry.streak),
        .activeRules = QString::number(entry.activeRules),
        .screenTime = formatMinutes(entry.screenTimeToday),
    };
}

GroupViewModel::GroupViewModel(Backend& backend)
{
    whenDone(this, backend.getGroupDashboard(ownGroup), [this](const Result<std::vector<GroupDashboardEntry>>& answer) {
        show(answer.value_or(std::vector<GroupDashboardEntry>{}));
    });
}

QString GroupViewModel::countText() const
{
    return textOf("leaderboard.friends", {{"count", std::to_string(m_memberCount)}});
}

void GroupViewModel::show(const std::vector<GroupDashboardEntry>& members)
{
    QList<GroupRow> rows;
    for (std::size_t at = 0; at < members.size(); ++at) {
        if (at % columns == 0)
            rows.push_back({.id = QString::fromStdString(members[at].userId)});
        rows.back().members.push_back(groupMember(members[at]));
    }
    m_rows.setRows(std::move(rows));
    m_memberCount = members.size();
    m_isLoading = false;
    Q_EMIT changed();
}

} // namespace stillgate
