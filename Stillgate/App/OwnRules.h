#pragma once

#include "App/AppState.h"

namespace stillgate
{

/// What the user changes of their own rules and schedules: operations that come to their end whatever becomes of the
/// screen that they were begun on. A rule holds here at once, also without a network; the backend follows. Nothing
/// happens once the session is over: it would be done to whoever signs in next.
class OwnRules
{
public:
    OwnRules(AppState& state, Backend& backend, Log& log);

    /// Into the list and in force before anything waits. The server's version takes the rule's place when it comes; if
    /// it doesn't, the rule stays until the next refresh that succeeds.
    [[nodiscard]] Task<> addRule(BlockRule rule);

    /// Out of the list and no longer in force, whatever its policy, before anything waits.
    [[nodiscard]] Task<> deleteRule(std::string id);

    /// Sent first: it is in the list once the server has it, as the server has it.
    [[nodiscard]] Task<Result<void>> addSchedule(BlockSchedule schedule);

    /// Out of the list when the server has answered, whatever it said.
    [[nodiscard]] Task<> deleteSchedule(std::string id);

private:
    AppState& m_state;
    Backend& m_backend;
    Log& m_log;
};

} // namespace stillgate
