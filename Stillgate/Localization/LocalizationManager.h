#pragma once

#include "Platform/Bundle.h"
#include "Platform/FileManager.h"
#include "Platform/Host.h"
#include "Platform/UserDefaults.h"

#include <nlohmann/json_fwd.hpp>

#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace stillgate
{

/// The texts that the user reads, by dotted key: in the user's language, else in English, else the key itself.
///
/// Read once and never changed, so that any thread may ask.
class LocalizationManager
{
public:
    using Parameters = std::map<std::string, std::string>;

    /// The language is the setting "sg_language" as it stands, else Turkish on a Turkish desktop, else English. A
    /// missing or broken file leaves its texts to the next in line, without a word.
    LocalizationManager(const Bundle& bundle, const FileManager& files, const UserDefaults& defaults, const Host& host);
    ~LocalizationManager();

    LocalizationManager(const LocalizationManager&) = delete;
    LocalizationManager& operator=(const LocalizationManager&) = delete;

    /// The code of the chosen language: "en".
    [[nodiscard]] const std::string& locale() const { return m_locale; }

    /// The code of the language that the texts are in: English where there are none in the chosen one.
    [[nodiscard]] std::string languageOfTexts() const { return m_translations ? m_locale : "en"; }

    /// The text of the key; each name between double braces is replaced by its parameter, if it has one.
    [[nodiscard]] std::string localized(std::string_view key, const Parameters& parameters = {}) const;

private:
    std::string m_locale = "en";
    std::unique_ptr<nlohmann::json> m_translations; ///< of another language than English; null if there is none
    std::unique_ptr<nlohmann::json> m_fallback;     ///< English; null if there is none
};

} // namespace stillgate
