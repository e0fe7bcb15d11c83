#include "Localization/L.h"

namespace stillgate
{

namespace
{

const LocalizationManager* texts = nullptr;

} // namespace

void ProcessTexts::use(const LocalizationManager& manager)
{
    texts = &manager;
}

std::string ProcessTexts::localized(std::string_view key, const LocalizationManager::Parameters& parameters) const
{
    return texts != nullptr ? texts->localized(key, parameters) : std::string{key};
}

std::string ProcessTexts::locale() const
{
    return texts != nullptr ? texts->languageOfTexts() : "en";
}

} // namespace stillgate
