#include "ProcessCost.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

namespace stillgate
{

namespace fs = std::filesystem;

namespace
{

fs::path folderOf(pid_t process)
{
    return fs::path{"/proc"} / std::to_string(process);
}

/// The number behind a name at the beginning of a line of `status`.
std::uint64_t numberIn(const fs::path& file, std::string_view name)
{
    std::ifstream lines{file};
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with(name))
            return std::stoull(line.substr(name.size()));
    }
    return 0;
}

bool isOfQt(const std::string& mapping)
{
    return mapping.contains("/libQt6") || mapping.contains("/libicu");
}

/// "7f0c5e200000-7f0c5e228000 r--p 00000000 fe:00 1836 /usr/lib/…", beside "Pss: 12 kB"
bool isHeadOfMapping(const std::string& line)
{
    return line.find('-') < line.find(' ');
}

} // namespace

ProcessUse useOf(pid_t process)
{
    ProcessUse use;
    for (const auto& thread : fs::directory_iterator{folderOf(process) / "task"}) {
        std::uint64_t nanoseconds = 0;
        std::ifstream{thread.path() / "schedstat"} >> nanoseconds;
        use.processor += std::chrono::nanoseconds{nanoseconds};
        const auto status = thread.path() / "status";
        use.wakeups += numberIn(status, "voluntary_ctxt_switches:") + numberIn(status, "nonvoluntary_ctxt_switches:");
    }
    return use;
}

double memoryOf(pid_t process)
{
    std::ifstream lines{folderOf(process) / "smaps"};
    std::uint64_t kibibytes = 0;
    bool countsInFull = false;
    for (std::string line; std::getline(lines, line);) {
        if (isHeadOfMapping(line))
            countsInFull = isOfQt(line);
        else if (line.starts_with(countsInFull ? "Rss:" : "Pss:"))
            kibibytes += std::stoull(line.substr(std::string_view{"Rss:"}.size()));
    }
    if (kibibytes == 0)
        throw std::runtime_error{"no such process, or not ours"};
    return static_cast<double>(kibibytes) * 1024 / 1e6;
}

} // namespace stillgate
