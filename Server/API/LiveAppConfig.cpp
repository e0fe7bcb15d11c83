#include "API/LiveAppConfig.h"

#include <toml++/toml.h>

namespace stillgate::server
{

namespace
{

AppConfig readAppConfig(const std::filesystem::path& file)
{
    const auto document = toml::parse_file(file.string());
    const auto table = document["app-config"];
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
    } catch (const toml::parse_error& failure) {
        m_log.write(std::string{"[Server] The configuration file is broken; going on as before: "} + failure.what());
    }
    return m_config;
}

} // namespace stillgate::server
