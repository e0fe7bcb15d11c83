#include "Texts/Texts.h"

#include "Models/JSONCoding.h"
#include "Platform/Text.h"

#include <QFile>

#include <algorithm>
#include <stdexcept>

namespace stillgate::server
{

namespace
{

constexpr auto defaultLanguage = "en";

Texts::Values readTexts(const std::string& language)
{
    QFile file{QString::fromStdString(":/stillgate-server/texts/" + language + ".json")};
    if (!file.open(QFile::ReadOnly))
        throw std::logic_error{"The texts of a language are missing: " + language};
    auto texts = JSONDecoder{DateForm::iso8601}.decode<Texts::Values>(file.readAll().toStdString());
    if (!texts)
        throw std::logic_error{"The texts of a language are broken: " + texts.error().description()};
    return *texts;
}

/// In one pass, so that a value that looks like a placeholder stays what it is.
std::string filledIn(std::string_view text, const Texts::Values& values)
{
    std::string filled;
    while (!text.empty()) {
        const auto open = std::min(text.find('{'), text.size());
        filled += text.substr(0, open);
        text.remove_prefix(open);
        const auto length = std::min(text.find('}'), text.size());
        const auto value = values.find(std::string{text.substr(0, length).substr(text.empty() ? 0 : 1)});
        const auto placeholder = text.substr(0, length + 1);
        filled += value == values.end() ? placeholder : value->second;
        text.remove_prefix(placeholder.size());
    }
    return filled;
}

} // namespace

Texts::Texts()
{
    for (const auto& language : languages())
        m_texts.emplace(language, readTexts(language));
}

const std::vector<std::string>& Texts::languages()
{
    static const std::vector<std::string> languages{defaultLanguage, "tr"};
    return languages;
}

const Texts::Values& Texts::all(const std::string& language) const
{
    const auto found = m_texts.find(language);
    return found == m_texts.end() ? m_texts.at(defaultLanguage) : found->second;
}

std::string Texts::text(const std::string& language, const std::string& key, const Values& values) const
{
    const auto& texts = all(language);
    const auto found = texts.find(key);
    return found == texts.end() ? key : filledIn(found->second, values);
}

std::string Texts::languageFor(std::string_view acceptLanguage) const
{
    // Browsers list the languages in their order of preference, so that the weights needn't be read.
    while (!acceptLanguage.empty()) {
        const auto end = std::min(acceptLanguage.find(','), acceptLanguage.size());
        const auto range = trimmed(acceptLanguage.substr(0, end));
        const std::string language{range.substr(0, range.find_first_of("-;"))};
        if (has(language))
            return language;
        acceptLanguage.remove_prefix(std::min(end + 1, acceptLanguage.size()));
    }
    return defaultLanguage;
}

} // namespace stillgate::server
