#pragma once

#include "Platform/Permanence.h"

#include <cstdint>

namespace stillgate::guard
{

/// What is, or is to be, in force for a user.
enum class Force : std::uint8_t {
    none,
    flexible,
    permanent,
};

[[nodiscard]] constexpr Force forceOf(Permanence permanence)
{
    return permanence == Permanence::permanent ? Force::permanent : Force::flexible;
}

/// Whose consent a change needs; each is an action of polkit.
enum class Consent : std::uint8_t {
    block,            ///< more is protected than before
    unblock,          ///< less is, of what the user has applied as flexible
    unblockPermanent, ///< less is, of what the user has applied as permanent
};

/// The consent to a change from what stands to what is wanted. `dropsNames`: names that stand won't do so any more.
/// Where permanent is wanted again, only temporary ones go.
[[nodiscard]] Consent neededConsent(Force standing, Force wanted, bool dropsNames);

/// The action's id in com.stillgate.guard.policy.
[[nodiscard]] const char* polkitAction(Consent consent);

} // namespace stillgate::guard
