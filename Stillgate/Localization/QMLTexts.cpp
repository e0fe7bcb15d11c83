#include "Localization/QMLTexts.h"

namespace stillgate
{

QString QMLTexts::text(const QString& key, const QVariantMap& parameters) const
{
    LocalizationManager::Parameters values;
    for (auto parameter = parameters.begin(); parameter != parameters.end(); ++parameter)
        values.emplace(parameter.key().toStdString(), parameter.value().toString().toStdString());
    return QString::fromStdString(L.localized(key.toStdString(), values));
}

} // namespace stillgate
