#include "ScreenTime/UsageFile.h"

#include "Models/JSONCoding.h"

#include <chrono>

namespace stillgate
{

namespace
{

/// The file has no dates, only a number of its own.
constexpr auto anyDateForm = DateForm::secondsSince2001;

/// 25 hours: when the clocks go back.
constexpr std::int64_t longestDay = std::chrono::seconds{std::chrono::hours{25}}.count();

/// THREAT: a damaged file. A number that we can't have written would go to the backend, which keeps the largest of a
/// day, and would lock the user out until the next one.
bool fitsInOneDay(const std::map<std::string, std::int64_t>& appUsage)
{
    auto left = longestDay; // one app is in front at a time
    for (const auto& [identifier, seconds] : appUsage) {
        if (seconds < 0 || seconds > left)
            return false;
        left -= seconds;
    }
    return true;
}

} // namespace

UsageFile::UsageFile(FileManager& files)
    : m_files(files)
{
    const auto folder = files.applicationSupportDirectory() / "com.stillgate.macos" / "screentime";
    m_file = folder / "usage.dat";
    (void)files.createDirectory(folder); // without it, reading and writing fail as told
}

void UsageFile::save(const PersistedUsage& usage)
{
    // Written every 30 seconds: no disk is to be woken for it.
    if (const auto text = JSONEncoder{anyDateForm}.encode(usage))
        (void)m_files.write(m_file, *text, {.durability = WriteOptions::Durability::relaxed});
}

std::optional<PersistedUsage> UsageFile::load() const
{
    const auto text = m_files.read(m_file);
    if (!text)
        return std::nullopt;
    auto usage = JSONDecoder{anyDateForm}.decode<PersistedUsage>(*text);
    if (!usage || !fitsInOneDay(usage->appUsage))
        return std::nullopt;
    return *std::move(usage);
}

} // namespace stillgate
