#pragma once

#include "App/DeviceAuthorization.h"

#include <iosfwd>

namespace stillgate
{

/// Signing in without a window: prints the link of the approval page, waits, and says what has happened.
class TerminalSignIn
{
public:
    TerminalSignIn(AppState& state, DeviceAuthorization& authorization, std::ostream& output);

    /// Whether there is a session now, new or from before.
    [[nodiscard]] Task<bool> run();

private:
    [[nodiscard]] Task<> authorize();
    void showLink();
    void tell(std::string_view text);

    AppState& m_state;
    DeviceAuthorization& m_authorization;
    std::ostream& m_output;
};

} // namespace stillgate
