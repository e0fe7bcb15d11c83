#include "API/LiveAppConfig.h"

#include <algorithm>
#include <array>
#include <toml++/toml.h>

namespace stillgate::server
{

namespace
{

/// A switch with a slip in its name, or a text for a truth value, would be off on the day when it matters.
void checkAppConfig(const toml::table* table)
{
    constexpr std::array texts{"maintenance-message", "minimum-version", "update-message", "update-url"};
    if (table == nullptr)
        return;
    for (const auto& [key, value] : *table) {
        const bool isRight = key == "maintenance-mode"
            ? value.is_boolean()
            : std::ranges::find(texts, key.str()) != texts.end() && value.is_string();
        if (!isRight)
            throw std::runtime_error{"[app-config]: " + std::string{key.str()} + " is unknown, or has a wrong value"};
    }
}

AppConfig readAppConfig(const std::filesystem::path& file)
{
    const auto document = toml::parse_file(file.string());
    const auto table = document["app-config"];
    checkAppConfig(table.as_table());
    const auto text = [&](const char* key) { return table[key].value<std::string>(); };
    return {.maintenanceMode = table["maintenance-mode"].value_or(false),
        .maintenanceMessage = text("maintenance-message"),
        .minVersion = text("minimum-version"),
        .forceUpdateMessage = text("update-message"),
        .forceUpdateUrl = text("update-url")};
}

} // namespace

LiveAppConfig::LiveAppConfig(std::filesystem::path file, Log& log)
    : m_file(std::move(file))
    , m_log(log)
{}

AppConfig LiveAppConfig::current()
{
    const std::scoped_lock lock{m_mutex};
    std::error_code error;
    const auto changedAt = std::filesystem::last_write_time(m_file, error);
    if (error || changedAt == m_readAt)
        return m_config;
    m_readAt = changedAt;
    try {
        m_config = readAppConfig(m_file);
    } catch (const std::exception& failure) {
        m_log.write(std::string{"[Server] The configuration file is broken; going on as before: "} + failure.what());
    }
    return m_config;
}

} // namespace stillgate::server
