#include "Views/Schedules/SchedulesViewModel.h"

#include "tests/support/AppStateFixture.h"
#include "tests/support/TextsInUse.h"

#include <QLocale>

namespace stillgate
{

using namespace test;

class Schedules : public AppStateFixture
{
protected:
    Schedules() { state().isAuthenticated = true; }

    CreateScheduleViewModel& openSheet()
    {
        m_viewModel.openCreateSheet();
        return *m_viewModel.createSheet();
    }

    [[nodiscard]] std::vector<std::string> namesInSession()
    {
        std::vector<std::string> names;
        for (const auto& schedule : state().schedules.value())
            names.push_back(schedule.name);
        return names;
    }

    OwnRules m_ownRules{state(), m_backend, m_log};
    SchedulesViewModel m_viewModel{state(), m_ownRules, m_host};
};

TEST(ScheduleRows, tellDaysAndTimesAsFarAsTheyAreKnown)
{
    using Days = std::optional<std::vector<std::string>>;
    using Time = std::optional<std::string>;
    const TextsInUse texts{R"({"schedule": {"alwaysOn": "Always on"}})"};

    const struct
    {
        std::string type;
        Days days;
        Time start;
        Time end;
        QString subtitle;
        QString brief;
    } cases[] = {
        {"recurring", Days{{"mon", "sun"}}, "09:00", "17:00", "mon, sun · 09:00 → 17:00", "mon, sun · 09:00 - 17:00"},
        {"recurring", Days{{}}, "22:00", "06:00", "22:00 → 06:00", "22:00 - 06:00"},
        {"recurring", std::nullopt, std::nullopt, "at noon", "at noon", "at noon"},
        {"recurring", Days{{"fri"}}, std::nullopt, std::nullopt, "fri", "fri"},
        {"recurring", std::nullopt, std::nullopt, std::nullopt, "", ""},
        {"always", Days{{"fri"}}, "09:00", "17:00", "24/7 — Always on", "24/7 — Always on"},
    };

    for (const auto& [type, days, start, end, subtitle, brief] : cases) {
        const BlockSchedule schedule{.scheduleType = type, .days = days, .startTime = start, .endTime = end};
        EXPECT_EQ(scheduleDetailRow(schedule).subtitle, subtitle);
        EXPECT_EQ(scheduleRow(schedule).subtitle, brief);
    }
}

TEST_F(Schedules, newOneIsSentAsTheFormSays)
{
    const auto send = [&](int type, std::initializer_list<int> toggledDays, const char* start) {
        auto& sheet = openSheet();
        sheet.setName(" ");
        for (const auto day : toggledDays)
            sheet.toggleDay(day);
        sheet.setProperty("startTime", start);
        sheet.chooseType(type);
        sheet.create();
        return m_backend.sentSchedules.back();
    };

    const auto recurring = send(1, {6, 0, 1, 0}, "22:00");
    EXPECT_THAT(*recurring.days, ElementsAre("mon", "wed", "thu", "fri", "sun"));
    EXPECT_EQ(recurring.startTime, "22:00");
    EXPECT_EQ(recurring.endTime, "17:00");
    EXPECT_EQ(recurring.timezone, "UTC");

    const auto onNoDay = send(1, {0, 1, 2, 3, 4}, "10:00");
    EXPECT_THAT(onNoDay.days, testing::Optional(IsEmpty()));
    EXPECT_NE(onNoDay.id, recurring.id);

    const auto always = send(0, {5}, "10:00");
    EXPECT_FALSE(always.days || always.startTime || always.endTime);
}

TEST_F(Schedules, newOneIsSentOnceAndShownAsTheServerHasIt)
{
    m_backend.createdSchedule = schedule("As the server has it", true);
    m_backend.hold("createSchedule");
    auto& sheet = openSheet();
    sheet.create();
    EXPECT_THAT(m_backend.sentSchedules, IsEmpty()) << "without a name";
    sheet.setName("Homework");
    sheet.create();
    sheet.create();
    EXPECT_THAT(m_backend.sentSchedules, SizeIs(1));
    EXPECT_TRUE(m_viewModel.isEmpty());

    m_backend.release("createSchedule");
    EXPECT_THAT(namesInSession(), ElementsAre("As the server has it"));
    EXPECT_FALSE(m_viewModel.isEmpty());
    EXPECT_EQ(m_viewModel.createSheet(), nullptr);

    m_backend.createdSchedule = FakeBackend::unreachable();
    auto& second = openSheet();
    second.setName("Sleep");
    second.create();
    EXPECT_EQ(m_viewModel.createSheet(), nullptr) << "a failure closes it too";
    EXPECT_THAT(namesInSession(), SizeIs(1));
}

TEST_F(Schedules, sheetThatIsLeftWhileItWaitsClosesNoOtherOne)
{
    m_backend.createdSchedule = schedule("s1", true);
    m_backend.hold("createSchedule");
    auto& left = openSheet();
    left.setName("Homework");
    left.create();
    m_viewModel.closeCreateSheet();
    const auto* next = &openSheet();
    m_backend.release("createSchedule");
    EXPECT_EQ(m_viewModel.createSheet(), next);
    EXPECT_THAT(namesInSession(), ElementsAre("s1")) << "it was sent, and is there";
}

TEST_F(Schedules, oneIsDeletedOnceTheUserHasAgreedAndTheServerHasAnswered)
{
    state().schedules = std::vector{schedule("s1", true), schedule("s2", true)};
    m_viewModel.askToDelete("s1");
    EXPECT_TRUE(m_viewModel.asksToDelete());
    m_viewModel.keep();
    EXPECT_FALSE(m_viewModel.asksToDelete());
    EXPECT_THAT(m_backend.calls, IsEmpty());

    m_backend.hold("deleteSchedule s1");
    m_viewModel.askToDelete("s1");
    m_viewModel.deleteForGood();
    EXPECT_FALSE(m_viewModel.asksToDelete());
    EXPECT_THAT(namesInSession(), SizeIs(2));
    m_backend.release("deleteSchedule s1"); // with a failure
    EXPECT_THAT(namesInSession(), SizeIs(1));

    m_viewModel.askToDelete("s2");
    state().schedules = std::vector<BlockSchedule>{};
    EXPECT_FALSE(m_viewModel.asksToDelete()) << "nothing is left to ask for";
}

TEST_F(Schedules, refreshTakesNoNewOneAwayAndBringsNoDeletedOneBack)
{
    m_backend.answerFirstLoad();
    m_backend.schedules = std::vector<BlockSchedule>{};
    m_backend.createdSchedule = schedule("s1", true);
    m_backend.hold("getSchedules");
    auto refresh = state().refreshData();
    auto& sheet = openSheet();
    sheet.setName("Homework");
    sheet.create();
    m_backend.release("getSchedules");
    await(std::move(refresh));
    EXPECT_THAT(namesInSession(), SizeIs(1));

    m_backend.schedules = std::vector{schedule("s1", true)};
    m_backend.hold("getSchedules");
    refresh = state().refreshData();
    m_viewModel.askToDelete("s1");
    m_viewModel.deleteForGood();
    m_backend.release("getSchedules");
    await(std::move(refresh));
    EXPECT_THAT(namesInSession(), IsEmpty());
}

TEST_F(Schedules, nothingIsMadeOrDeletedAfterASignOut)
{
    auto& sheet = openSheet();
    sheet.setName("Homework");
    m_viewModel.askToDelete("s1");
    state().logout();
    sheet.create();
    m_viewModel.deleteForGood();
    EXPECT_THAT(m_backend.calls, IsEmpty());
}

TEST_F(Schedules, weekBeginsOnMondayInTheLanguageOfTheTexts)
{
    const auto before = QLocale{};
    QLocale::setDefault(QLocale{"en"});
    EXPECT_THAT(CreateScheduleViewModel::dayLabels(), ElementsAre("M", "T", "W", "T", "F", "S", "S"));
    EXPECT_EQ(CreateScheduleViewModel::dayTitles().first(), "Monday");
    QLocale::setDefault(QLocale{"tr"});
    EXPECT_EQ(CreateScheduleViewModel::dayTitles().first(), "Pazartesi");
    QLocale::setDefault(before);
}

} // namespace stillgate
