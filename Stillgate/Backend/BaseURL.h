#pragma once

#include "Platform/Log.h"

#include <optional>
#include <string>
#include <vector>

namespace stillgate
{

/// The first candidate that can be the backend's base URL, without trailing slashes: HTTPS, with a host, ending in
/// "/v1". One that isn't HTTPS is logged; all others are passed over in silence.
///
/// THREAT: the candidates come from the environment and the settings, which other programs of the user can change.
/// HTTPS and the pins of SecureSession stand against that.
[[nodiscard]] std::optional<std::string> resolveBaseURL(
    const std::vector<std::optional<std::string>>& candidates, Log& log);

/// What is said when there is none; the program can't go on then.
inline constexpr auto noBaseURLMessage =
    "[Stillgate] No valid API base URL found. Set STILLGATE_API_BASE_URL env var, UserDefaults key sg_api_base_url, "
    "or Info.plist key STILLGATE_API_BASE_URL. URL must use HTTPS and end with /v1.";

} // namespace stillgate
