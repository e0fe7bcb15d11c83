#pragma once

#include "Models/Session.h"
#include "Platform/Log.h"

#include <filesystem>
#include <mutex>
#include <optional>
#include <string>

namespace stillgate::server
{

/// The remote switchboard, from the table [app-config] of the configuration file: an operator's change is told from
/// the next request on. A file that can't be read leaves the last good values in force. From any thread.
class LiveAppConfig
{
public:
    LiveAppConfig(std::filesystem::path file, Log& log);

    [[nodiscard]] AppConfig current();

private:
    std::filesystem::path m_file;
    Log& m_log;
    std::mutex m_mutex;
    std::optional<std::filesystem::file_time_type> m_readAt;
    AppConfig m_config;
};

} // namespace stillgate::server
