#include "App/OwnRules.h"

#include <algorithm>

namespace stillgate
{

namespace
{

template <class Record>
std::vector<Record> without(std::vector<Record> records, const std::string& id)
{
    std::erase_if(records, [&](const Record& record) { return record.id == id; });
    return records;
}

} // namespace

OwnRules::OwnRules(AppState& state, Backend& backend, Log& log)
    : m_state(state)
    , m_backend(backend)
    , m_log(log)
{}

Task<> OwnRules::addRule(BlockRule rule)
{
    if (!m_state.isAuthenticated)
        co_return;
    const auto session = m_state.sessionToken();
    auto rules = m_state.blockRules.value();
    rules.push_back(rule);
    m_state.beginOwnChange();
    m_state.blockRules = std::move(rules);
    m_state.syncBlockingState();
    m_state.saveToCache(); // a start without a network shall find it

    const auto localId = rule.id;
    auto answer = co_await m_backend.createBlockRule(std::move(rule));
    m_state.endOwnChange();
    if (!answer)
        m_log.write("[CreateRule] API failed: " + answer.error().description());
    if (!answer || session.isCancelled())
        co_return;
    rules = m_state.blockRules.value(); // others may have come or gone meanwhile
    const auto local = std::ranges::find(rules, localId, &BlockRule::id);
    if (local == rules.end())
        co_return;
    *local = std::move(*answer);
    m_state.blockRules = std::move(rules);
    m_state.saveToCache();
}

Task<> OwnRules::deleteRule(std::string id)
{
    if (!m_state.isAuthenticated)
        co_return;
    m_state.beginOwnChange();
    m_state.blockRules = without(m_state.blockRules.value(), id);
    m_state.syncBlockingState(HostsFileService::Rewrite::always);
    m_state.saveToCache();
    (void)co_await m_backend.deleteBlockRule(std::move(id));
    m_state.endOwnChange();
}

Task<Result<void>> OwnRules::addSchedule(BlockSchedule schedule)
{
    if (!m_state.isAuthenticated)
        co_return failure(APIError::unauthorized());
    const auto session = m_state.sessionToken();
    m_state.beginOwnChange();
    auto answer = co_await m_backend.createSchedule(std::move(schedule));
    m_state.endOwnChange();
    if (!answer)
        co_return std::unexpected{answer.error()};
    if (!session.isCancelled()) {
        auto schedules = m_state.schedules.value();
        schedules.push_back(std::move(*answer));
        m_state.schedules = std::move(schedules);
        m_state.saveToCache();
    }
    co_return Result<void>{};
}

Task<> OwnRules::deleteSchedule(std::string id)
{
    if (!m_state.isAuthenticated)
        co_return;
    const auto session = m_state.sessionToken();
    m_state.beginOwnChange();
    (void)co_await m_backend.deleteSchedule(id);
    m_state.endOwnChange();
    if (session.isCancelled())
        co_return;
    m_state.schedules = without(m_state.schedules.value(), id);
    m_state.saveToCache();
}

} // namespace stillgate
