#include "App/StateCache.h"

#include "Models/JSONCoding.h"

namespace stillgate
{

namespace
{

CachedState cachedState(const SessionData& session)
{
    const auto& user = session.currentUser.value();
    CachedState cached{
        .streak = session.streak,
        .blockRules = session.blockRules,
        .devices = session.devices,
        .schedules = session.schedules,
        .tasks = session.tasks,
        .budget = session.budget,
        .connections = session.connections,
        .userName = user ? user->displayName : std::nullopt,
    };
    if (session.knowsGuardian) {
        cached.sharingConnections = session.sharingConnections.value();
        cached.guardianRulesForMe = session.guardianRulesForMe.value();
    }
    return cached;
}

void restore(CachedState cached, SessionData& session)
{
    session.streak = std::move(cached.streak);
    session.blockRules = std::move(cached.blockRules);
    session.devices = std::move(cached.devices);
    session.schedules = std::move(cached.schedules);
    session.tasks = std::move(cached.tasks);
    session.budget = cached.budget;
    session.connections = std::move(cached.connections);
    session.knowsGuardian = cached.sharingConnections && cached.guardianRulesForMe;
    if (cached.sharingConnections)
        session.sharingConnections = std::move(*cached.sharingConnections);
    if (cached.guardianRulesForMe)
        session.guardianRulesForMe = std::move(*cached.guardianRulesForMe);
}

} // namespace

StateCache::StateCache(FileManager& files, Log& log)
    : m_files(files)
    , m_log(log)
{
    const auto folder = files.applicationSupportDirectory() / "com.stillgate.macos" / "cache";
    m_file = folder / "state.dat";
    (void)files.createDirectory(folder); // without it, reading and writing fail as told
}

void StateCache::save(const SessionData& session)
{
    const auto text = JSONEncoder{DateForm::secondsSince2001}.encode(cachedState(session));
    const auto written = text ? m_files.write(m_file, *text, {}) : std::unexpected{text.error()};
    if (!written)
        m_log.write("[AppState] Cache write failed: " + written.error().description());
}

bool StateCache::load(SessionData& session) const
{
    const auto text = m_files.read(m_file);
    if (!text)
        return false;
    auto cached = JSONDecoder{DateForm::secondsSince2001}.decode<CachedState>(*text);
    if (cached)
        restore(std::move(*cached), session);
    else
        m_log.write("[AppState] Cache read failed: " + cached.error().description());
    return true;
}

void StateCache::clear()
{
    (void)m_files.remove(m_file);
}

} // namespace stillgate
