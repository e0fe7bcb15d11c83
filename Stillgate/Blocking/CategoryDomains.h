#pragma once

#include "Platform/Bundle.h"
#include "Platform/FileManager.h"

#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace stillgate
{

/// The domains of each category, from the block lists of the program.
///
/// Read on the first question and kept for the life of the process: a list that changes on disk counts from the next
/// start on.
class CategoryDomains
{
public:
    CategoryDomains(const FileManager& files, const Bundle& bundle);

    /// In the order and case of the file; none for an unknown category or one without a usable file.
    [[nodiscard]] std::span<const std::string> find(const std::string& category);

private:
    void load();
    [[nodiscard]] std::optional<std::vector<std::string>> load(std::string_view stem) const;

    const FileManager& m_files;
    std::vector<std::filesystem::path> m_searchPath;
    bool m_isLoaded = false;
    std::map<std::string, std::vector<std::string>> m_domains;
};

/// The domains of a block list: {"domains": [{"domain": "example.com", "name": "Example"}, ...]}.
///
/// Entries without "domain" are passed over. Nothing if the text has another form, which includes an entry with a
/// value that is no text.
[[nodiscard]] std::optional<std::vector<std::string>> domainsOfBlockList(std::string_view text);

} // namespace stillgate
