#include "Platform/Linux/LinuxScheduler.h"
#include "Platform/OneShotEvent.h"
#include "tests/support/Await.h"

namespace stillgate
{

using namespace test;
using namespace std::chrono_literals;

namespace
{

Task<> happened(OneShotEvent* event)
{
    co_await *event;
}

Task<> wait(Scheduler* scheduler, std::chrono::milliseconds span)
{
    OneShotEvent later;
    co_await waitAtMost(scheduler, span, happened(&later));
    later.happen();
}

} // namespace

TEST(Scheduling, repeatsUntilTheTimerGoesAlsoFromWithinItsCall)
{
    LinuxScheduler scheduler;
    OneShotEvent third;
    int calls = 0;
    std::unique_ptr<Timer> timer = scheduler.repeating(1ms, [&] {
        if (++calls == 3) {
            timer.reset();
            third.happen();
        }
    });
    auto takenBack = scheduler.once(1ms, [] { ADD_FAILURE() << "a timer that is gone calls nobody"; });
    takenBack.reset();
    await(happened(&third));
    await(wait(&scheduler, 5ms));
    EXPECT_EQ(calls, 3);
}

TEST(Scheduling, neverCallsEarly)
{
    LinuxScheduler scheduler;
    OneShotEvent due;
    const auto start = std::chrono::steady_clock::now();
    const auto timer = scheduler.once(50ms, [&] { due.happen(); });
    await(happened(&due));
    EXPECT_GE(std::chrono::steady_clock::now() - start, 49ms);
}

} // namespace stillgate
