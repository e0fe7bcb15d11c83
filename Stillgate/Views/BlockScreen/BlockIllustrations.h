#pragma once

#include "Blocking/BlockModal.h"

#include <filesystem>

namespace stillgate
{

/// The illustration of a block screen: a guardian's choice, else one for the category, else one for the variant; of
/// three, the hour of the day (0 to 23) picks one.
[[nodiscard]] std::string illustrationName(const BlockModal& modal, int hour);

/// Its file below the bundle; empty if there is none of this name.
///
/// THREAT: a name comes from the network. It is a name, never a path.
[[nodiscard]] std::filesystem::path illustrationFile(const std::filesystem::path& bundle, const std::string& name);

} // namespace stillgate
