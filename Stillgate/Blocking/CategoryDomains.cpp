#include "Blocking/CategoryDomains.h"

#include "Models/JSONCoding.h"

#include <array>

namespace stillgate
{

namespace
{

struct CategoryFile
{
    std::string_view stem;
    std::string_view category;
};

constexpr std::array<CategoryFile, 7> categoryFiles{{
    {"social-media", "social_media"},
    {"gambling", "gambling"},
    {"gaming", "gaming"},
    {"streaming", "streaming"},
    {"shopping", "shopping"},
    {"adult", "adult"},
    {"news", "news"},
}};

struct BlockList
{
    std::vector<std::map<std::string, std::string>> domains;

    STILLGATE_RECORD(BlockList, domains);
};

} // namespace

CategoryDomains::CategoryDomains(const FileManager& files, const Bundle& bundle)
    : m_files(files)
    , m_searchPath{
          bundle.path() / "Contents/Resources/block-lists", bundle.path() / "../DNSProxy/block-lists",
          std::filesystem::path{STILLGATE_APP_SOURCE_DIR} / "../../DNSProxy/block-lists", // out of the build tree
      }
{}

std::span<const std::string> CategoryDomains::find(const std::string& category)
{
    if (!m_isLoaded)
        load();
    const auto found = m_domains.find(category);
    return found == m_domains.end() ? std::span<const std::string>{} : found->second;
}

void CategoryDomains::load()
{
    m_isLoaded = true;
    for (const auto& [stem, category] : categoryFiles) {
        if (auto domains = load(stem))
            m_domains.emplace(category, std::move(*domains));
    }
}

std::optional<std::vector<std::string>> CategoryDomains::load(std::string_view stem) const
{
    for (const auto& folder : m_searchPath) {
        const auto text = m_files.read(folder / (std::string{stem} + ".json"));
        if (!text)
            continue;
        if (auto domains = domainsOfBlockList(*text))
            return domains;
    }
    return std::nullopt;
}

std::optional<std::vector<std::string>> domainsOfBlockList(std::string_view text)
{
    const auto list = JSONDecoder{DateForm::iso8601}.decode<BlockList>(text);
    if (!list)
        return std::nullopt;
    std::vector<std::string> domains;
    for (const auto& entry : list->domains) {
        if (const auto domain = entry.find("domain"); domain != entry.end())
            domains.push_back(domain->second);
    }
    return domains;
}

} // namespace stillgate
