#pragma once

#include "Models/Date.h"

#include <string>

namespace stillgate::server
{

// Calendar days as text, "2026-01-15", which sorts as the days do.

[[nodiscard]] std::string dayOf(Date moment, const std::string& timeZone);
[[nodiscard]] Date startOfDay(const std::string& day, const std::string& timeZone);
[[nodiscard]] std::string dayAfter(const std::string& day, int days);
[[nodiscard]] bool isDay(const std::string& text);

} // namespace stillgate::server
