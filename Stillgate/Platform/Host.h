#pragma once

#include "Models/Date.h"

#include <string>

namespace stillgate
{

/// The machine, and how its user has set it up.
class Host
{
public:
    virtual ~Host() = default;

    /// Its name, as `hostname` gives it; empty if it has none.
    [[nodiscard]] virtual std::string name() const = 0;

    /// ISO 639-1 code of the language that the user reads texts in: "en"; empty if none is set.
    [[nodiscard]] virtual std::string languageCode() const = 0;

    /// The first moment of the calendar day, in the machine's time zone, that the moment belongs to.
    [[nodiscard]] virtual Date startOfDay(Date moment) const = 0;

    /// What a clock on the wall shows then, in the machine's time zone: the full hour, 0 to 23.
    [[nodiscard]] virtual int hourOfDay(Date moment) const = 0;

    /// What a calendar on the wall shows then, in the machine's time zone.
    [[nodiscard]] virtual std::chrono::weekday weekday(Date moment) const = 0;

    /// The machine's time zone, by its identifier in the tz database: "Europe/Istanbul".
    [[nodiscard]] virtual std::string timeZone() const = 0;
};

} // namespace stillgate
