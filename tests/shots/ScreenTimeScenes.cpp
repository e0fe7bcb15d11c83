#include "tests/shots/Scene.h"
#include "tests/shots/Stage.h"

namespace stillgate::test
{

namespace
{

DailyScreenTime day(std::string date, std::int64_t minutes)
{
    return {.date = std::move(date), .totalMinutes = minutes};
}

void show(Stage& stage, ScreenTimeReport report)
{
    stage.backend.reports["week"] = std::move(report);
    stage.openTab(settingstab::screenTime);
}

void loading(Stage& stage)
{
    stage.backend.hold("getScreenTimeReport week");
    stage.openTab(settingstab::screenTime);
}

void week(Stage& stage)
{
    ScreenTimeReport report{.totalMinutes = 1254, .avgDailyMinutes = 179, .totalPickups = 312};
    for (const auto& [date, minutes] : {std::pair{"2026-01-09", 0}, {"2026-01-10", 59}, {"2026-01-11", 305},
             {"2026-01-12", 221}, {"2026-01-13", 178}, {"2026-01-14", 256}, {"2026-01-15", 235}})
        report.days.push_back(day(date, minutes));
    auto& today = report.days.back();
    today.categoryTotals = {{"social_media", 96}, {"streaming", 64}, {"gaming", 31}, {"news", 12}};
    today.appUsage = {
        {.identifier = "org.mozilla.firefox", .name = "Firefox", .minutes = 121},
        {.identifier = "org.gnome.Totem", .name = "Videos", .minutes = 64},
        {.identifier = "org.example.chess", .minutes = 31},
    };
    show(stage, std::move(report));
}

/// Many categories, more apps than are shown, long names, more use than the day has, and dates of another form.
void much(Stage& stage)
{
    ScreenTimeReport report{.totalMinutes = 40'000, .avgDailyMinutes = 1'333, .totalPickups = 1'234'567};
    for (int at = 1; at <= 30; ++at)
        report.days.push_back(day("15 January", 48 * at));
    auto& today = report.days.back();
    today.categoryTotals.emplace();
    for (const auto* key : {"social_media", "gaming", "streaming", "gambling", "shopping", "news", "adult",
             "home_office_and_everything_else", "education", "other"})
        today.categoryTotals->emplace(key, 1'400 - 137 * std::ssize(*today.categoryTotals));
    today.appUsage.emplace();
    for (int at = 0; at < 14; ++at)
        today.appUsage->push_back({.identifier = "org.example.app" + std::to_string(at),
            .name = at % 3 == 0 ? std::optional<std::string>{"A program with a name that goes on for quite a while"}
                                : std::nullopt,
            .minutes = 1'500 - 110 * at});
    show(stage, std::move(report));
}

} // namespace

std::vector<Scene> screenTimeScenes()
{
    return {
        {"screen-time", "loading", loading},
        {"screen-time", "none", [](Stage& stage) { stage.openTab(settingstab::screenTime); }},
        {"screen-time", "figures-alone", [](Stage& stage) { show(stage, {.totalMinutes = 59, .avgDailyMinutes = 8}); }},
        {"screen-time", "week", week},
        {"screen-time", "much", much},
    };
}

} // namespace stillgate::test
