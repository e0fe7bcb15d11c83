#include "Family/Streaks.h"
#include "tests/server/ServerFixture.h"

namespace stillgate::test
{

namespace
{

using namespace std::chrono_literals;
using nlohmann::json;
using testing::ElementsAre;

class FamilyTest : public ServerTest
{
protected:
    FamilyTest()
    {
        // The days pass here without anybody's refreshing.
        database.execute("UPDATE access_tokens SET expires_at = ?", time.now() + 1000h);
    }

    Person ada = signUp("ada");
    Person grace = signUp("grace");

    json budget(const Person& person) { return call(person, "GET", "/sharing/budget").body; }

    void use(const Person& person, int minutes)
    {
        EXPECT_EQ(call(person, "POST", "/sharing/report-usage", {{"usedMinutes", minutes}}).status, 200);
    }

    int setLimit(const Person& person, const std::string& connection, int minutes)
    {
        return call(person, "PUT", "/sharing/limit", {{"connectionId", connection}, {"dailyLimitMinutes", minutes}})
            .status;
    }

    int setMode(const std::string& connection, const std::string& mode)
    {
        return call(ada, "PUT", "/guardian/connections/" + connection + "/settings", {{"flexibilityMode", mode}})
            .status;
    }

    std::vector<std::string> feed(const std::string& connection)
    {
        std::vector<std::string> lines;
        for (const auto& event : call(ada, "GET", "/guardian/connections/" + connection + "/activity?days=7").body)
            lines.push_back(event["message"]);
        return lines;
    }

    static json task(int minutes, const std::string& repeat = "once")
    {
        return {{"title", "Read"}, {"rewardMinutes", minutes}, {"repeatType", repeat}, {"requiresProof", false}};
    }

    static json guardianRule(const std::string& category, bool enabled = true)
    {
        return {{"category", category}, {"enabled", enabled}, {"customDomains", json::array()},
            {"customApps", json::object()}};
    }
};

STILLGATE_ON_BOTH_DATABASES(FamilyTest);

TEST_P(FamilyTest, sharingCodeMakesItsUserTheGuardianOnceAndForADay)
{
    EXPECT_EQ(call(grace, "GET", "/sharing/my-code").status, 404);
    const std::string old = call(grace, "POST", "/sharing/generate").body["code"];
    const std::string code = call(grace, "POST", "/sharing/generate").body["code"];
    EXPECT_EQ(call(grace, "GET", "/sharing/my-code").body["code"], code);
    EXPECT_EQ(call(ada, "POST", "/sharing/link", {{"code", old}}).status, 404);
    EXPECT_EQ(call(grace, "POST", "/sharing/link", {{"code", code}}).status, 400);

    std::string typed = ' ' + code.substr(0, 4) + '-' + code.substr(4) + ' ';
    std::ranges::transform(typed, typed.begin(), [](unsigned char letter) { return std::tolower(letter); });
    const auto connection = call(ada, "POST", "/sharing/link", {{"code", typed}}).body["connection"];
    EXPECT_EQ(connection["controllerUserId"], ada.id);
    EXPECT_EQ(connection["controlledName"], "grace");
    EXPECT_EQ(connection["role"], "controller");
    EXPECT_EQ(call(grace, "GET", "/sharing/connections").body[0]["role"], "controlled");
    EXPECT_EQ(call(ada, "POST", "/sharing/link", {{"code", code}}).status, 404);

    const auto late = call(grace, "POST", "/sharing/generate").body["code"];
    time.advance(24h);
    EXPECT_EQ(call(signUp("late"), "POST", "/sharing/link", {{"code", late}}).status, 404);
}

TEST_P(FamilyTest, effectiveRulesAreOnesOwnAndTheGuardiansThatAreInForce)
{
    const auto connection = link(ada, grace);
    const auto path = "/guardian/connections/" + connection + "/rules";
    const json own{{"id", "0e4fbd8e-4f2b-4e0e-8f5f-94a6ae8ef2b1"}, {"category", "news"}, {"enabled", true},
        {"customDomains", {"one.example"}}, {"excludedDomains", json::array()}, {"unblockPolicy", "flexible"}};
    EXPECT_EQ(call(grace, "POST", "/block-rules", own).body["id"], own["id"]);
    auto disabled = own;
    disabled["enabled"] = false;
    EXPECT_NE(call(grace, "POST", "/block-rules", disabled).body["id"], own["id"]); // taken
    const std::string rule = call(ada, "POST", path, guardianRule("gaming")).body["id"];
    call(ada, "POST", path, guardianRule("adult", false));

    const auto effective = call(grace, "GET", "/block-rules/effective").body;
    ASSERT_EQ(effective["rules"].size(), 2);
    EXPECT_EQ(effective["rules"][0]["_source"], "own");
    EXPECT_EQ(effective["rules"][0]["customDomains"], own["customDomains"]);
    EXPECT_EQ(effective["rules"][1]["_source"], "guardian");
    EXPECT_EQ(effective["rules"][1]["_connectionId"], connection);
    EXPECT_EQ(effective["rules"][1]["userId"], grace.id);
    EXPECT_EQ(effective["guardianConnections"][0]["flexibilityMode"], "flexible");

    const auto changed = call(ada, "PUT", "/guardian/rules/" + rule, {{"enabled", false}}).body;
    EXPECT_EQ(changed["category"], "gaming");
    EXPECT_EQ(call(grace, "GET", "/block-rules/effective").body["rules"].size(), 1);
    EXPECT_EQ(call(ada, "GET", "/block-rules/effective").body["rules"].size(), 0);
    EXPECT_EQ(call(ada, "GET", "/sharing/controlled-users").body[0]["guardianRules"].size(), 2);
}

TEST_P(FamilyTest, budgetTakesTheSmallestLimitAndTheLargestReportOfEachDevice)
{
    const auto first = link(ada, grace);
    EXPECT_EQ(budget(grace)["dailyLimitMinutes"], 0);
    const auto second = link(signUp("other"), grace);
    EXPECT_EQ(setLimit(ada, first, 90), 200);
    EXPECT_EQ(budget(grace)["dailyLimitMinutes"], 90); // the other one set none
    EXPECT_EQ(setLimit(ada, first, 1441), 400);
    EXPECT_EQ(setLimit(grace, first, 1440), 404);
    EXPECT_EQ(setLimit(ada, second, 10), 404);
    EXPECT_EQ(budget(ada)["dailyLimitMinutes"], 0);

    auto tablet = grace;
    const auto code = call({}, "POST", "/auth/device-code").body;
    server::DeviceCodes{database}.decide(code["userCode"], grace.id, true, time.now());
    tablet.token =
        call({}, "POST", "/auth/device-code/poll", {{"device_code", code["deviceCode"]}}).body["accessToken"];
    use(grace, 40);
    use(grace, 20); // comes late
    use(tablet, 15);
    EXPECT_EQ(budget(grace)["usedMinutesToday"], 55);
    time.advance(12h); // midnight
    EXPECT_EQ(budget(grace)["usedMinutesToday"], 0);
}

TEST_P(FamilyTest, dayBeginsAtMidnightWhereTheAccountIs)
{
    const auto east = signUp("east", "Pacific/Auckland"); // 01:00 of the 16th when it is 12:00 of the 15th in UTC
    const auto day = [](const char* date) { return json{{"date", date}, {"totalMinutes", 10}}; };
    EXPECT_EQ(call(east, "POST", "/screen-time/daily", day("2026-01-16")).status, 200);
    EXPECT_EQ(call(east, "GET", "/screen-time/report?period=day").body["endDate"], "2026-01-16");
    use(east, 30);
    time.advance(22h);
    EXPECT_EQ(budget(east)["usedMinutesToday"], 30);
    time.advance(1h);
    EXPECT_EQ(budget(east)["usedMinutesToday"], 0);
}

TEST_P(FamilyTest, detailSentWithAMomentCountsForTheDayOfItsReceipt)
{
    const auto east = signUp("east", "Pacific/Auckland"); // the 16th, in its first hour
    const char* moments[] = {"2026-01-15T11:59:59Z", "2026-01-15T23:30:00.5+05:00", "1970-01-01T00:00:00Z"};
    int minutes = 10;
    for (const auto* moment : moments) {
        const auto stored =
            call(east, "POST", "/screen-time/daily", {{"date", moment}, {"totalMinutes", ++minutes}}).status;
        EXPECT_EQ(stored, 200) << moment;
        const auto days = call(east, "GET", "/screen-time/report?period=month").body["days"];
        ASSERT_EQ(days.size(), 1) << moment;
        EXPECT_EQ(days[0]["date"], "2026-01-16") << moment;
        EXPECT_EQ(days[0]["totalMinutes"], minutes) << moment;
    }
}

TEST_P(FamilyTest, rewardsCountOnTheDayOfApprovalAndNotByOnesOwnWord)
{
    const auto selfMade = [&](const Person& person) {
        const std::string id = call(person, "POST", "/tasks", task(20)).body["id"];
        call(person, "POST", "/tasks/" + id + "/complete", json::object());
        return call(person, "POST", "/tasks/" + id + "/approve").status;
    };
    EXPECT_EQ(selfMade(grace), 200);
    EXPECT_EQ(budget(grace)["earnedMinutesToday"], 20); // nobody else is there to approve
    const auto connection = link(ada, grace);
    EXPECT_EQ(budget(grace)["earnedMinutesToday"], 0);
    EXPECT_EQ(selfMade(grace), 200);
    EXPECT_EQ(budget(grace)["earnedMinutesToday"], 0);

    earn(ada, connection, grace, 30);
    EXPECT_EQ(budget(grace)["earnedMinutesToday"], 30);
    EXPECT_EQ(budget(grace)["completedTaskCount"], 3);
    time.advance(12h);
    EXPECT_EQ(budget(grace)["earnedMinutesToday"], 0);
}

TEST_P(FamilyTest, taskGoesFromPendingToJudgedAndOnlyBetweenTheTwo)
{
    const auto connection = link(ada, grace);
    const auto stranger = signUp("stranger");
    const auto path = "/guardian/connections/" + connection + "/tasks";
    const std::string id = call(ada, "POST", path, task(10)).body["id"];
    const auto act = [&](const Person& person, const std::string& action, const json& body = json::object()) {
        return call(person, "POST", "/tasks/" + id + '/' + action, body).status;
    };
    EXPECT_EQ(act(ada, "approve"), 409);
    EXPECT_EQ(act(ada, "complete"), 403);
    EXPECT_EQ(act(stranger, "complete"), 404);
    EXPECT_EQ(act(grace, "complete", {{"type", "text"}}), 400);
    EXPECT_EQ(act(grace, "complete", {{"type", "text"}, {"content", "read it"}}), 200);
    EXPECT_EQ(act(grace, "complete"), 200); // asked again, answered alike
    EXPECT_EQ(act(grace, "approve"), 403);
    EXPECT_EQ(act(stranger, "reject"), 404);
    EXPECT_EQ(act(ada, "reject", {{"reason", "Once more"}}), 200);
    EXPECT_EQ(call(grace, "GET", "/tasks?role=assignee").body[0]["rejectedReason"], "Once more");
    EXPECT_EQ(act(grace, "complete"), 200);
    EXPECT_EQ(act(ada, "approve"), 200);
    EXPECT_EQ(act(ada, "approve"), 409);
    EXPECT_EQ(act(grace, "complete"), 409);

    EXPECT_EQ(call(grace, "GET", "/tasks?role=assigner").body.size(), 0);
    EXPECT_EQ(call(ada, "GET", "/tasks").body[0]["assignerName"], "ada");
    EXPECT_EQ(call(ada, "POST", "/tasks",
                  [&] {
                      auto body = task(10);
                      body["assigneeId"] = stranger.id;
                      return body;
                  }())
                  .status,
        404);
}

TEST_P(FamilyTest, guardianOfOnesOwnMakingEarnsNothing)
{
    const auto connection = link(ada, grace);
    const auto puppet = signUp("puppet");
    const std::string early = call(grace, "POST", "/sharing/generate").body["code"];
    EXPECT_EQ(setMode(connection, "permanent"), 200);
    EXPECT_EQ(call(puppet, "POST", "/sharing/link", {{"code", early}}).status, 404);
    EXPECT_EQ(call(grace, "POST", "/sharing/generate").status, 403);
    EXPECT_EQ(setMode(connection, "flexible"), 200);

    // Nor does one who was a guardian when they gave the task.
    const auto other = link(puppet, grace);
    const std::string id = call(puppet, "POST", "/guardian/connections/" + other + "/tasks", task(600)).body["id"];
    call(grace, "POST", "/tasks/" + id + "/complete", json::object());
    EXPECT_EQ(call(grace, "DELETE", "/sharing/connections/" + other).status, 200);
    EXPECT_EQ(call(puppet, "POST", "/tasks/" + id + "/approve").status, 403);
}

TEST_P(FamilyTest, bypassIsToldWhateverTheAppIsCalled)
{
    const auto connection = link(ada, grace);
    std::string name;
    for (int letter = 0; letter < 600; ++letter)
        name += "ş";
    const json report{{"eventType", "bypass_attempt"}, {"details", "a" + name}};
    EXPECT_EQ(call(grace, "POST", "/guardian/tampering", report).status, 200);
    EXPECT_EQ(feed(connection).size(), 1);
}

TEST_P(FamilyTest, repeatingTaskComesAgainOnTheNextDay)
{
    const auto connection = link(ada, grace);
    const std::string id =
        call(ada, "POST", "/guardian/connections/" + connection + "/tasks", task(10, "daily")).body["id"];
    call(grace, "POST", "/tasks/" + id + "/complete", json::object());
    call(ada, "POST", "/tasks/" + id + "/approve");
    EXPECT_EQ(call(grace, "GET", "/tasks").body.size(), 1);
    EXPECT_EQ(budget(grace)["pendingTaskCount"], 0);
    time.advance(12h);
    const auto tasks = call(grace, "GET", "/tasks?role=assignee").body;
    ASSERT_EQ(tasks.size(), 2);
    EXPECT_EQ(budget(grace)["pendingTaskCount"], 1);
}

TEST_P(FamilyTest, permanentConnectionIsLeftByTheGuardianAlone)
{
    const auto connection = link(ada, grace);
    const auto path = "/sharing/connections/" + connection;
    EXPECT_EQ(setMode(connection, "iron"), 400);
    EXPECT_EQ(setMode(connection, "permanent"), 200);
    EXPECT_EQ(call(grace, "DELETE", path).status, 403);
    EXPECT_EQ(setMode(connection, "flexible"), 200);
    EXPECT_EQ(call(grace, "DELETE", path).status, 200);
    const auto again = link(ada, grace);
    EXPECT_EQ(setMode(again, "permanent"), 200);
    EXPECT_EQ(call(ada, "DELETE", "/sharing/connections/" + again).status, 200);
    EXPECT_EQ(call(grace, "GET", "/sharing/connections").body, json::array());
}

TEST_P(FamilyTest, feedTellsWhatHappenedInTheGuardiansLanguage)
{
    const auto connection = link(ada, grace);
    for (const int minutes : {75, 90, 105}) // a slider on its way
        setLimit(ada, connection, minutes);
    time.advance(2min);
    const std::string rule =
        call(ada, "POST", "/guardian/connections/" + connection + "/rules", guardianRule("gaming")).body["id"];
    time.advance(1s);
    call(ada, "PUT", "/guardian/rules/" + rule, {{"enabled", false}});
    time.advance(1s);
    setMode(connection, "permanent");
    time.advance(1s);
    EXPECT_EQ(call(grace, "POST", "/guardian/tampering",
                  {{"eventType", "bypass_attempt"}, {"details", "Continue — Chess {minutes}"}})
                  .status,
        200);
    EXPECT_THAT(feed(connection),
        ElementsAre("A block was passed: Continue — Chess {minutes}", "Mode changed to permanent",
            "Rule turned off: Gaming", "Rule added: Gaming", "Daily limit set to 105 min"));
    database.execute("UPDATE users SET language = 'tr' WHERE id = ?", ada.id);
    EXPECT_EQ(feed(connection)[3], "Kural eklendi: Oyun");
    time.advance(7 * 24h + 1s);
    EXPECT_THAT(feed(connection), ElementsAre());
    EXPECT_EQ(call(grace, "GET", "/guardian/connections/" + connection + "/activity").status, 404);
}

TEST_P(FamilyTest, streakRunsWithHeartbeatsAndEndsWithABypass)
{
    const auto beat = [&] {
        return call(grace, "POST", "/devices/" + grace.deviceId + "/heartbeat",
            {{"blockedAttempts", 0}, {"blockingWasActive", true}})
            .status;
    };
    for (int day = 0; day < 3; ++day) {
        EXPECT_EQ(beat(), 200);
        time.advance(24h);
    }
    auto streak = call(grace, "GET", "/stats/streak").body;
    EXPECT_EQ(streak["currentStreakDays"], 3); // today hasn't counted yet
    EXPECT_EQ(streak["streakStartDate"], "2026-01-15");
    beat();
    call(grace, "POST", "/guardian/tampering", {{"eventType", "bypass_attempt"}});
    streak = call(grace, "GET", "/stats/streak").body;
    EXPECT_EQ(streak["currentStreakDays"], 0);
    EXPECT_EQ(streak["longestStreakDays"], 3);
    EXPECT_EQ(streak["lastActiveDate"], "2026-01-17");

    link(ada, grace);
    const auto boards = call(ada, "GET", "/leaderboard/streak?groupId=default").body;
    EXPECT_EQ(boards[0]["rank"], 1);
    EXPECT_EQ(boards[1]["rank"], 1); // level at 0
    EXPECT_EQ(call(ada, "GET", "/groups/default/dashboard").body[1]["role"], "controlled");
    EXPECT_EQ(call(ada, "GET", "/groups/others/dashboard").status, 404);
}

TEST_P(FamilyTest, focusIsTheTimeBetweenTwoBeats)
{
    const auto beat = [&](bool wasActive) {
        call(grace, "POST", "/devices/" + grace.deviceId + "/heartbeat",
            {{"blockedAttempts", 0}, {"blockingWasActive", wasActive}});
    };
    beat(true);
    time.advance(5min);
    beat(true);
    time.advance(5min);
    beat(false);
    time.advance(3h); // the machine slept
    beat(true);
    const auto board = call(grace, "GET", "/leaderboard/focus?groupId=default&period=week").body;
    EXPECT_EQ(board[0]["focusMinutes"], 5);
}

TEST_P(FamilyTest, reportAddsUpTheDevicesOfEachDay)
{
    const auto store = [&](const std::string& date, int minutes, const json& apps) {
        return call(grace, "POST", "/screen-time/daily",
            {{"date", date}, {"totalMinutes", minutes}, {"pickupCount", 2}, {"appUsage", apps},
                {"categoryTotals", {{"gaming", minutes}}}})
            .status;
    };
    const auto app = [](const char* name, int minutes) {
        return json{{"identifier", name}, {"minutes", minutes}, {"openCount", 1}};
    };
    EXPECT_EQ(store("2026-01-08", 100, json::array()), 200); // before the week
    EXPECT_EQ(store("2026-01-14", 30, json::array({app("chess", 30)})), 200);
    EXPECT_EQ(store("2026-01-14", 20, json::array({app("chess", 20)})), 200); // comes late
    EXPECT_EQ(store("2026-01-15", 50, json::array({app("chess", 10), app("go", 40)})), 200);
    database.execute("INSERT INTO devices (id, user_id, device_name, platform, created_at, updated_at) "
                     "VALUES ('tablet', ?, 'Tablet', 'ios', 0, 0)",
        grace.id);
    database.execute("INSERT INTO daily_screen_time (user_id, device_id, date, total_minutes, pickup_count, app_usage, "
                     "category_totals, created_at) SELECT user_id, 'tablet', date, total_minutes, pickup_count, "
                     "app_usage, category_totals, created_at FROM daily_screen_time WHERE date = '2026-01-15'");

    const auto report = call(grace, "GET", "/screen-time/report?period=week").body;
    EXPECT_EQ(report["startDate"], "2026-01-09");
    EXPECT_EQ(report["totalMinutes"], 130);
    EXPECT_EQ(report["avgDailyMinutes"], 65);
    EXPECT_EQ(report["totalPickups"], 6);
    ASSERT_EQ(report["days"].size(), 2);
    EXPECT_EQ(report["days"][1]["appUsage"][0], json::parse(R"({"identifier":"go","minutes":80,"openCount":2})"));
    EXPECT_EQ(report["days"][1]["categoryTotals"]["gaming"], 100);
    EXPECT_EQ(call(grace, "GET", "/screen-time/report?period=month").body["days"].size(), 3);
    EXPECT_EQ(call(ada, "GET", "/screen-time/report?period=week").body["avgDailyMinutes"], 0);
}

} // namespace

} // namespace stillgate::test
