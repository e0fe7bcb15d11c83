#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace stillgate::server
{

/// What the server says to people, in each of its languages: the web site's texts and the lines of activity feeds.
class Texts
{
public:
    /// From the program's resources. Throws std::logic_error if one is broken.
    Texts();

    using Values = std::map<std::string, std::string>;

    /// The text with each "{name}" filled in; the key itself if there is none. An unknown language reads as English.
    [[nodiscard]] std::string text(
        const std::string& language, const std::string& key, const Values& values = {}) const;

    [[nodiscard]] const Values& all(const std::string& language) const;

    /// The best of our languages for an Accept-Language header (RFC 9110, 12.5.4).
    [[nodiscard]] std::string languageFor(std::string_view acceptLanguage) const;

    [[nodiscard]] bool has(const std::string& language) const { return m_texts.contains(language); }

    [[nodiscard]] bool has(const std::string& language, const std::string& key) const
    {
        return all(language).contains(key);
    }

    static const std::vector<std::string>& languages();

private:
    std::map<std::string, Values> m_texts;
};

} // namespace stillgate::server
