#pragma once

#include "Platform/FileManager.h"
#include "Platform/Log.h"
#include "Platform/UserDefaults.h"

#include <nlohmann/json.hpp>

namespace stillgate
{

/// The settings as one JSON object in a file, read once and written whole at each change.
///
/// A file that isn't such an object is kept aside, as `<file>.broken`, when the first setting is stored.
class JSONUserDefaults final : public UserDefaults
{
public:
    JSONUserDefaults(std::filesystem::path file, FileManager& files, Log& log);

    /// `com.stillgate.macos/defaults.json` in `$XDG_CONFIG_HOME`, or `~/.config`.
    [[nodiscard]] static std::filesystem::path standardFile();

    [[nodiscard]] std::optional<std::string> string(std::string_view key) const override;
    [[nodiscard]] bool boolean(std::string_view key) const override;
    void setString(std::string_view key, std::string value) override;
    void setBoolean(std::string_view key, bool value) override;

private:
    void load();
    void store(std::string_view key, nlohmann::json value);
    [[nodiscard]] Result<void> save();

    std::filesystem::path m_file;
    FileManager& m_files;
    Log& m_log;
    nlohmann::json m_values = nlohmann::json::object();
    bool m_isBroken = false;
};

} // namespace stillgate
