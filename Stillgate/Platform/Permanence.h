#pragma once

namespace stillgate
{

/// Who may undo what is put in force, where the system can tell its users from its administrators.
enum class Permanence {
    flexible,  ///< the user
    permanent, ///< an administrator alone
};

} // namespace stillgate
