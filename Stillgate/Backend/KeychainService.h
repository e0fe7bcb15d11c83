#pragma once

#include "Platform/FileManager.h"

#include <optional>
#include <string>
#include <string_view>

namespace stillgate
{

/// The token store: a private file a key, `com.stillgate.macos/secure/<key>` below the user's application data, with
/// a mask over its bytes.
///
/// THREAT: the mask keeps a token out of a search for its text, no more. What protects the files is their mode, 0600:
/// whoever can read them as the user can also use the session. A failure never reaches the caller; a session whose
/// files can't be written lives until the program ends.
class KeychainService
{
public:
    explicit KeychainService(FileManager& files);

    void save(std::string_view key, std::string_view value);

    /// Nothing if there is no such file, it can't be read, or it doesn't hold UTF-8.
    [[nodiscard]] std::optional<std::string> load(std::string_view key) const;

    void remove(std::string_view key);

private:
    [[nodiscard]] std::filesystem::path fileOf(std::string_view key) const;

    FileManager& m_files;
    std::filesystem::path m_storageDir;
};

} // namespace stillgate
