#pragma once

namespace stillgate::guard
{

inline constexpr auto proxySocketUnit = "stillgate-dnsproxy.socket";
inline constexpr auto proxyUnit = "stillgate-dnsproxy.service";
inline constexpr auto redirectUnit = "stillgate-dns-redirect.service";
inline constexpr auto guardUnit = "stillgate-guard.service";

} // namespace stillgate::guard
