#include "Views/Streak/StreakViewModel.h"

#include "Platform/Memory/ManualTime.h"
#include "Platform/Memory/MemoryHost.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

namespace stillgate
{

using namespace test;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

class Streaks : public testing::Test
{
protected:
    StreakViewModel makeViewModel(std::filesystem::path bundle = "/nowhere")
    {
        return {m_session, m_time, m_time, m_host, std::move(bundle)};
    }

    /// The week as it is drawn: "v" done, "o" today, "." neither.
    static std::string weekOf(const StreakViewModel& viewModel)
    {
        std::string drawn;
        for (const auto& day : viewModel.week())
            drawn += day.isToday && day.isDone ? '?' : day.isToday ? 'o' : day.isDone ? 'v' : '.';
        return drawn;
    }

    static std::vector<QString> valuesOf(const StreakViewModel& viewModel)
    {
        std::vector<QString> values;
        for (const auto& figure : viewModel.figures())
            values.push_back(figure.value);
        return values;
    }

    SessionData m_session;
    ManualTime m_time;
    MemoryHost m_host;
};

TEST_F(Streaks, weekShowsTheDaysBeforeTodayThatTheCountCovers)
{
    const auto monday = std::chrono::sys_days{std::chrono::year{2026} / 1 / 12};

    const struct
    {
        int daysAfterMonday;
        std::int64_t streak;
        std::string week;
    } cases[] = {{0, 3, "o......"}, {1, 1, ".o....."}, {1, 2, "vo....."}, {3, 3, ".vvo..."}, {3, 4, "vvvo..."},
        {3, 0, "...o..."}, {6, 400, "vvvvvvo"}, {6, 2, ".....vo"}};

    const auto viewModel = makeViewModel();
    for (const auto& [daysAfterMonday, streak, week] : cases) {
        m_time.setCivilTime(monday + std::chrono::days{daysAfterMonday} + std::chrono::hours{23});
        m_session.streak = Streak{.currentStreakDays = streak};
        EXPECT_EQ(weekOf(viewModel), week);
    }
    m_time.setCivilTime(monday + std::chrono::days{1});
    const auto week = viewModel.week();
    EXPECT_EQ(week[0].spoken, "Monday, common.completed");
    EXPECT_EQ(week[1].spoken, "Tuesday, time.today");
    EXPECT_EQ(week[6].spoken, "Sunday");
}

TEST_F(Streaks, weekTurnsAtMidnightInAWindowThatStaysOpen)
{
    const auto sunday = std::chrono::sys_days{std::chrono::year{2026} / 1 / 18};
    m_time.setCivilTime(sunday + 23h + 55min);
    const auto viewModel = makeViewModel();
    std::vector<std::string> shown;
    QObject::connect(&viewModel, &StreakViewModel::changed, [&] { shown.push_back(weekOf(viewModel)); });
    m_time.advance(4min);
    EXPECT_THAT(shown, IsEmpty());
    m_time.advance(2min);
    EXPECT_THAT(shown, ElementsAre("o......"));
    m_time.advance(24h);
    EXPECT_THAT(shown, ElementsAre("o......", ".o....."));
    m_time.setCivilTime(sunday); // by the user, or while the machine was suspended
    m_time.advance(1min);
    EXPECT_THAT(shown, ElementsAre("o......", ".o.....", "......o"));
}

TEST_F(Streaks, milestonesAreReachedByTheCurrentCountAlone)
{
    const auto viewModel = makeViewModel();
    for (const auto& [streak, reached] :
        {std::pair{0, 0}, {6, 0}, {7, 1}, {13, 1}, {14, 2}, {59, 3}, {179, 5}, {364, 6}, {365, 7}, {1000, 7}}) {
        m_session.streak = Streak{.currentStreakDays = streak, .longestStreakDays = 500};
        const auto milestones = viewModel.milestones();
        EXPECT_EQ(std::ranges::count_if(milestones, &Milestone::isReached), reached) << streak;
        EXPECT_EQ(milestones.front().isReached, reached > 0) << streak;
    }
}

TEST_F(Streaks, figuresStandForWhatIsMissing)
{
    const auto viewModel = makeViewModel();
    int changes = 0;
    QObject::connect(&viewModel, &StreakViewModel::changed, [&] { ++changes; });
    EXPECT_EQ(viewModel.dayCount(), "0");
    EXPECT_THAT(valuesOf(viewModel), ElementsAre("0d", "—", "time.today"));

    m_session.streak = Streak{
        .currentStreakDays = 2, .longestStreakDays = 9, .streakStartDate = "2026-01-14", .lastActiveDate = "yesterday"};
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(viewModel.dayCount(), "2");
    EXPECT_THAT(valuesOf(viewModel), ElementsAre("9d", "2026-01-14", "yesterday"));
}

TEST_F(Streaks, symbolStandsForAPictureThatIsMissing)
{
    const TemporaryFolder bundle;
    putFile(bundle.path() / "Contents/Resources/ill-streak-tree.webp", "picture");
    const auto viewModel = makeViewModel(bundle.path());
    for (const auto& milestone : viewModel.milestones())
        EXPECT_EQ(milestone.illustration.isEmpty(), milestone.name != "streak.milestone.tree");
}

} // namespace stillgate
