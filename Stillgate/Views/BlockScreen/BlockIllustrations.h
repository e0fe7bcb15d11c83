#pragma once

#include "Blocking/BlockModal.h"

#include <string>

namespace stillgate
{

/// The illustration of a block screen: a guardian's choice, else one for the category, else one for the variant; of
/// three, the hour of the day (0 to 23) picks one.
[[nodiscard]] std::string illustrationName(const BlockModal& modal, int hour);

} // namespace stillgate
