#pragma once

#include "Platform/Log.h"

#include <string>

namespace stillgate
{

/// Hands an http or https address to the user's browser; any other is refused. The log doesn't tell which one it was.
///
/// Threat: the address may come from the network. It reaches xdg-open as one argument, and as nothing but an address.
void openInBrowser(const std::string& url, Log& log);

} // namespace stillgate
