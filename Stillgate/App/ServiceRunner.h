#pragma once

#include "App/AppState.h"

namespace stillgate
{

/// What runs beside a session, with windows or without: it starts when a session has come up, and stops when the
/// program ends.
class ServiceRunner
{
public:
    ServiceRunner(AppState& state, const AppServices& services);

    /// Also a second time within a second of a start: the services take that.
    void startServices();

    /// Before the program ends: reports what has to be reported, and stops what runs. The blocks stay; a write that is
    /// under way comes to its end.
    [[nodiscard]] Task<> applicationWillTerminate();

    /// Waits until nothing is being written any more that has to be.
    [[nodiscard]] Task<> settle();

private:
    [[nodiscard]] Task<> start(std::vector<std::string> domains);

    AppState& m_state;
    AppServices m_services;
};

} // namespace stillgate
