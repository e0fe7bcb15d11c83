#include "Backend/UnreachableBackend.h"

namespace stillgate
{

namespace
{

template <class T>
Task<Result<T>> unreachable()
{
    co_return failure(APIError::transport("this build has no backend client"));
}

} // namespace

UnreachableBackend::UnreachableBackend(KeychainService& store)
    : m_tokens(store)
{}

Task<Result<AppConfig>> UnreachableBackend::getAppConfig()
{
    return unreachable<AppConfig>();
}

Task<Result<Streak>> UnreachableBackend::getStreak(CancellationToken)
{
    return unreachable<Streak>();
}

Task<Result<std::vector<BlockRule>>> UnreachableBackend::getBlockRules(CancellationToken)
{
    return unreachable<std::vector<BlockRule>>();
}

Task<Result<std::vector<SGDevice>>> UnreachableBackend::getDevices(CancellationToken)
{
    return unreachable<std::vector<SGDevice>>();
}

Task<Result<std::vector<BlockSchedule>>> UnreachableBackend::getSchedules(CancellationToken)
{
    return unreachable<std::vector<BlockSchedule>>();
}

Task<Result<std::vector<SGTask>>> UnreachableBackend::getTasks(std::optional<std::string>, CancellationToken)
{
    return unreachable<std::vector<SGTask>>();
}

Task<Result<ScreenTimeBudget>> UnreachableBackend::getScreenTimeBudget(CancellationToken)
{
    return unreachable<ScreenTimeBudget>();
}

Task<Result<SGUser>> UnreachableBackend::getMe(CancellationToken)
{
    return unreachable<SGUser>();
}

Task<Result<SharingCode>> UnreachableBackend::getMySharingCode(CancellationToken)
{
    return unreachable<SharingCode>();
}

Task<Result<std::vector<SharingConnection>>> UnreachableBackend::getSharingConnections(CancellationToken)
{
    return unreachable<std::vector<SharingConnection>>();
}

Task<Result<EffectiveRulesResponse>> UnreachableBackend::getEffectiveRules(CancellationToken)
{
    return unreachable<EffectiveRulesResponse>();
}

Task<Result<void>> UnreachableBackend::sendHeartbeat(std::string, std::int64_t)
{
    return unreachable<void>();
}

Task<Result<void>> UnreachableBackend::reportUsage(std::int64_t)
{
    return unreachable<void>();
}

} // namespace stillgate
