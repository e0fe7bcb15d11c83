#include "Platform/OneShotEvent.h"

namespace stillgate
{

namespace
{

Task<> announce(Task<> task, std::shared_ptr<OneShotEvent> ended)
{
    co_await task;
    ended->happen();
}

} // namespace

Task<> waitAtMost(Scheduler* scheduler, std::chrono::milliseconds limit, Task<> task)
{
    auto endedOrLate = std::make_shared<OneShotEvent>();
    runDetached(announce(std::move(task), endedOrLate));
    const auto timer = scheduler->once(limit, [endedOrLate] { endedOrLate->happen(); });
    co_await *endedOrLate;
}

Task<> waitFor(Scheduler* scheduler, std::chrono::milliseconds time)
{
    OneShotEvent isOver;
    const auto timer = scheduler->once(time, [&isOver] { isOver.happen(); });
    co_await isOver;
}

} // namespace stillgate
