#pragma once

#include "Operation/Configuration.h"
#include "Platform/Clock.h"
#include "Platform/Log.h"

#include <filesystem>

namespace stillgate::server
{

/// Serves until SIGINT or SIGTERM. `file` is the configuration's: its [app-config] is followed. Throws if an address,
/// the certificate or the database can't be used.
void serve(const Configuration& configuration, const std::filesystem::path& file, const Clock& clock, Log& log);

} // namespace stillgate::server
