#pragma once

#include "Platform/Host.h"

namespace stillgate
{

class LinuxHost final : public Host
{
public:
    [[nodiscard]] std::string name() const override;
    [[nodiscard]] std::string languageCode() const override;
    [[nodiscard]] Date startOfDay(Date moment) const override;
    [[nodiscard]] int hourOfDay(Date moment) const override;
    [[nodiscard]] std::chrono::weekday weekday(Date moment) const override;
    [[nodiscard]] std::string timeZone() const override;
};

} // namespace stillgate
