#include "Views/ScreenTime/ScreenTimeViewModel.h"

#include "Views/Common/Minutes.h"
#include "tests/support/FakeBackend.h"
#include "tests/support/Matchers.h"

namespace stillgate
{

using namespace test;

class ScreenTimeReports : public testing::Test
{
protected:
    /// The tab as it is once the week has come.
    ScreenTimeViewModel& shown()
    {
        m_backend.reports["week"] = m_report;
        m_viewModel.emplace(m_backend);
        return *m_viewModel;
    }

    DailyScreenTime& addDay(std::string date, std::int64_t minutes)
    {
        return m_report.days.emplace_back(DailyScreenTime{.date = std::move(date), .totalMinutes = minutes});
    }

    template <class Row, class Value>
    static std::vector<Value> column(const QList<Row>& rows, Value Row::* member)
    {
        std::vector<Value> values;
        for (const auto& row : rows)
            values.push_back(row.*member);
        return values;
    }

    FakeBackend m_backend;
    ScreenTimeReport m_report;
    std::optional<ScreenTimeViewModel> m_viewModel;
};

TEST(Minutes, areHoursAndMinutesFromAnHourOn)
{
    EXPECT_EQ(formatMinutes(59), "59m");
    EXPECT_EQ(formatMinutes(60), "1h 0m");
    EXPECT_EQ(hoursAndMinutes(59), "0h 59m");
    EXPECT_EQ(hoursAndMinutes(135), "2h 15m");
}

TEST_F(ScreenTimeReports, theSkeletonTakesThePlaceOfTheOtherPeriodsReport)
{
    m_backend.reports["month"] = m_report;
    m_backend.hold("getScreenTimeReport month");
    auto& viewModel = shown();
    EXPECT_TRUE(viewModel.hasReport() && !viewModel.isLoading());

    viewModel.select(1);
    EXPECT_TRUE(viewModel.isLoading() && !viewModel.hasReport());
    EXPECT_THAT(viewModel.figures(), IsEmpty());
    m_backend.release("getScreenTimeReport month");
    EXPECT_TRUE(viewModel.hasReport() && !viewModel.isLoading());

    m_backend.reports["week"] = FakeBackend::unreachable();
    viewModel.select(0);
    EXPECT_FALSE(viewModel.hasReport() || viewModel.isLoading()) << "a failure leaves nothing of what was";

    m_backend.calls.clear();
    for (const int period : {-1, 0, 2})
        viewModel.select(period);
    EXPECT_THAT(m_backend.calls, IsEmpty()) << "nothing else is chosen";
}

TEST_F(ScreenTimeReports, theAnswerForAPeriodThatIsNoLongerChosenCountsForNothing)
{
    m_report.totalMinutes = 7;
    m_backend.hold("getScreenTimeReport week");
    auto& viewModel = shown();
    m_backend.reports["month"] = ScreenTimeReport{.totalMinutes = 30};
    m_backend.hold("getScreenTimeReport month");
    viewModel.select(1);

    m_backend.release("getScreenTimeReport week");
    EXPECT_TRUE(viewModel.isLoading());
    m_backend.release("getScreenTimeReport month");
    EXPECT_EQ(viewModel.figures().front().value, "30m");
}

TEST_F(ScreenTimeReports, barsAreTheLastSevenDaysOnTheScaleOfAll)
{
    for (const auto& [date, minutes] :
        {std::pair{"2026-01-01", 400}, {"2026-01-02", 50}, {"2026-01-03", 0}, {"2026-01-04", 59}, {"2026-01-05", 60},
            {"2026-01-06", 200}, {"2026-01-07", 8}, {"Friday", 125}, {"1-2-3-4", 300}})
        addDay(date, minutes);
    const auto days = shown().days();
    EXPECT_THAT(column(days, &DayBar::day), ElementsAre("03", "04", "05", "06", "07", "Friday", "1-2-3-4"));
    EXPECT_THAT(column(days, &DayBar::hours), ElementsAre("0h", "0h", "1h", "3h", "0h", "2h", "5h"));
    EXPECT_THAT(column(days, &DayBar::height), ElementsAre(4, 14.75, 15, 50, 4, 31.25, 75));
}

TEST_F(ScreenTimeReports, daysWithoutUseAreStubs)
{
    addDay("2026-01-01", 0);
    EXPECT_THAT(column(shown().days(), &DayBar::height), ElementsAre(4));
}

TEST_F(ScreenTimeReports, categoriesAreThoseOfTheLastDayLargestFirst)
{
    addDay("2026-01-01", 10).categoryTotals = {{"adult", 10}};
    addDay("2026-01-02", 100).categoryTotals = {{"gaming", 30}, {"3d_video calls", 30}, {"i", 60}, {"news", 200}};
    const auto categories = shown().categories();
    EXPECT_THAT(column(categories, &UsageShare::name),
        ElementsAre("onboarding.categories.news", "I", "3d_Video Calls", "onboarding.categories.games"));
    EXPECT_THAT(column(categories, &UsageShare::share), ElementsAre(2, 0.6, 0.3, 0.3));
    EXPECT_EQ(categories.front().minutes, "3h 20m");
}

TEST_F(ScreenTimeReports, appsAreTheFirstTenOfTheLastDayAsTheyCome)
{
    auto& apps = addDay("2026-01-02", 0).appUsage.emplace();
    for (int minutes = 1; minutes <= 11; ++minutes)
        apps.push_back({.identifier = "org.example.app", .minutes = minutes});
    const auto shares = shown().apps();
    ASSERT_THAT(shares, SizeIs(10));
    EXPECT_EQ(shares[1].name, "org.example.app");
    EXPECT_EQ(shares[1].share, 2) << "of a day of a minute at least";
}

TEST_F(ScreenTimeReports, sectionsStayAwayWithoutDataOfTheLastDay)
{
    EXPECT_THAT(shown().days(), IsEmpty());
    auto& before = addDay("2026-01-01", 5);
    before.categoryTotals = {{"news", 5}};
    before.appUsage = {{.identifier = "a", .minutes = 5}};
    addDay("2026-01-02", 5);
    EXPECT_THAT(shown().days(), SizeIs(2));
    EXPECT_THAT(shown().categories(), IsEmpty());
    EXPECT_THAT(shown().apps(), IsEmpty());
}

} // namespace stillgate
