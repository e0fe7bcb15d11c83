#include "Views/Group/GroupViewModel.h"

#include "tests/support/FakeBackend.h"
#include "tests/support/Matchers.h"
#include "tests/support/TextsInUse.h"

namespace stillgate
{

using namespace test;

namespace
{

/// The names as they stand in the two columns.
std::vector<std::vector<QString>> namesOf(GroupViewModel& viewModel)
{
    std::vector<std::vector<QString>> rows;
    for (int at = 0; at < viewModel.rows()->rowCount(); ++at) {
        auto& names = rows.emplace_back();
        const auto row = viewModel.rows()->index(at, 0).data(RowsModel<GroupRow>::rowRole).value<GroupRow>();
        for (const auto& member : row.members)
            names.push_back(member.name);
    }
    return rows;
}

GroupDashboardEntry member(const std::string& name)
{
    return {.userId = name, .displayName = name, .role = "member"};
}

} // namespace

TEST(Group, membersStandInTwoColumnsInTheOrderOfTheServer)
{
    const TextsInUse texts{R"({"leaderboard": {"friends": "With {{count}}"}})"};
    FakeBackend backend;
    backend.hold("getGroupDashboard default");
    backend.group = std::vector{member("Zoe"), member("Ada"), member("Mia")};
    GroupViewModel viewModel{backend};
    EXPECT_TRUE(viewModel.isLoading());

    backend.release("getGroupDashboard default");
    EXPECT_FALSE(viewModel.isLoading() || viewModel.isEmpty());
    EXPECT_THAT(namesOf(viewModel), ElementsAre(ElementsAre("Zoe", "Ada"), ElementsAre("Mia")));
    EXPECT_EQ(viewModel.countText(), "With 3");
}

TEST(Group, aFailureLooksLikeAGroupOfNobody)
{
    FakeBackend backend;
    GroupViewModel viewModel{backend};
    EXPECT_FALSE(viewModel.isLoading());
    EXPECT_TRUE(viewModel.isEmpty());
}

TEST(Group, memberShowsWhatTheServerKnows)
{
    const TextsInUse texts{R"({"groups": {"roles": {"member": "Member"}}, "errors": {"notFound": "Nobody"}})"};

    const std::pair<GroupDashboardEntry, GroupMember> cases[] = {
        {{.displayName = "émile", .role = "member", .streak = 5, .activeRules = 3, .screenTimeToday = 60},
            {"É", "émile", "Member", "5d", "3", "1h 0m"}},
        {{.displayName = "👩‍🚀 Sam", .role = "chief", .screenTimeToday = 59},
            {"👩‍🚀", "👩‍🚀 Sam", "groups.roles.chief", "0d", "0", "59m"}},
        {{.displayName = "", .role = "member"}, {"?", "Nobody", "Member", "0d", "0", "0m"}},
    };

    for (const auto& [entry, shown] : cases)
        EXPECT_EQ(groupMember(entry), shown) << shown.name.toStdString();
}

} // namespace stillgate
