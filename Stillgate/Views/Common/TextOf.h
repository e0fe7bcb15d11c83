#pragma once

#include "Localization/L.h"

#include <QLocale>
#include <QString>

namespace stillgate
{

/// The text of a key, for a screen. `LocalizationManager::localized` says what the parameters are.
[[nodiscard]] inline QString textOf(std::string_view key, const LocalizationManager::Parameters& parameters = {})
{
    return QString::fromStdString(L.localized(key, parameters));
}

/// The same within a sentence.
[[nodiscard]] inline QString lowerCaseTextOf(std::string_view key)
{
    return QLocale().toLower(textOf(key));
}

/// "3 apps", with the text of the key behind the number.
[[nodiscard]] inline QString counted(qsizetype count, std::string_view key)
{
    return QString::number(count) + ' ' + textOf(key);
}

} // namespace stillgate
