#pragma once

#include "Models/Record.h"
#include "Platform/FileManager.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>

namespace stillgate
{

/// A day's use as it stands in the file.
struct PersistedUsage
{
    std::map<std::string, std::int64_t> appUsage; ///< seconds, by bundle identifier
    double lastReportDate = 0;                    ///< the start of that day, in seconds since 1970

    STILLGATE_RECORD(PersistedUsage, appUsage, lastReportDate);
};

/// The file usage.dat in `com.stillgate.macos/screentime` below the user's application data.
class UsageFile
{
public:
    explicit UsageFile(FileManager& files);

    /// A failure leaves the old file.
    void save(const PersistedUsage& usage);

    /// Nothing if there is no file that can be read, or if it holds what no day can.
    [[nodiscard]] std::optional<PersistedUsage> load() const;

private:
    FileManager& m_files;
    std::filesystem::path m_file;
};

} // namespace stillgate
