#pragma once

#include "Platform/Host.h"

namespace stillgate
{

/// A machine in UTC.
class MemoryHost final : public Host
{
public:
    [[nodiscard]] std::string name() const override { return "workbench"; }

    [[nodiscard]] std::string languageCode() const override { return language; }

    [[nodiscard]] Date startOfDay(Date moment) const override { return std::chrono::floor<std::chrono::days>(moment); }

    [[nodiscard]] int hourOfDay(Date moment) const override
    {
        return static_cast<int>((moment - startOfDay(moment)) / std::chrono::hours{1});
    }

    [[nodiscard]] std::chrono::weekday weekday(Date moment) const override
    {
        return std::chrono::weekday{std::chrono::floor<std::chrono::days>(moment)};
    }

    [[nodiscard]] std::string timeZone() const override { return "UTC"; }

    std::string language = "en";
};

} // namespace stillgate
