#include "Localization/LocalizationManager.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <optional>
#include <ranges>
#include <vector>

namespace stillgate
{

namespace
{

std::string chosenLanguage(const UserDefaults& defaults, const Host& host)
{
    if (const auto setting = defaults.string("sg_language"))
        return *setting;
    return host.languageCode() == "tr" ? "tr" : "en";
}

/// The file's texts; null unless it holds a JSON object.
std::unique_ptr<nlohmann::json> textsOf(const std::string& language, const Bundle& bundle, const FileManager& files)
{
    // A setting is no path: it names a file of this one folder.
    if (language.find('/') != std::string::npos)
        return nullptr;
    const auto text = files.read(bundle.path() / "Contents/Resources/i18n" / (language + ".json"));
    if (!text)
        return nullptr;
    auto texts = nlohmann::json::parse(*text, nullptr, /*allow_exceptions*/ false);
    return texts.is_object() ? std::make_unique<nlohmann::json>(std::move(texts)) : nullptr;
}

std::optional<std::string> resolve(const nlohmann::json* texts, std::string_view key)
{
    const auto* value = texts;
    for (const auto piece : std::views::split(key, '.')) {
        if (piece.empty())
            continue;
        if (value == nullptr || !value->is_object())
            return std::nullopt;
        const auto member = value->find(std::string_view{piece.begin(), piece.end()});
        value = member != value->end() ? &*member : nullptr;
    }
    return value != nullptr && value->is_string() ? std::optional{value->get<std::string>()} : std::nullopt;
}

void replaceAll(std::string& text, const std::string& placeholder, const std::string& value)
{
    for (auto at = text.find(placeholder); at != std::string::npos; at = text.find(placeholder, at + value.size()))
        text.replace(at, placeholder.size(), value);
}

} // namespace

LocalizationManager::LocalizationManager(
    const Bundle& bundle, const FileManager& files, const UserDefaults& defaults, const Host& host)
    : m_locale(chosenLanguage(defaults, host))
    , m_translations(m_locale == "en" ? nullptr : textsOf(m_locale, bundle, files))
    , m_fallback(textsOf("en", bundle, files))
{}

LocalizationManager::~LocalizationManager() = default;

std::string LocalizationManager::localized(std::string_view key, const Parameters& parameters) const
{
    auto text = resolve(m_translations.get(), key);
    if (!text)
        text = resolve(m_fallback.get(), key);
    if (!text)
        text = key;
    for (const auto& [name, value] : parameters)
        replaceAll(*text, "{{" + name + "}}", value);
    return *text;
}

} // namespace stillgate
