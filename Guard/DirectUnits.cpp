#include "Guard/DirectUnits.h"

#include <filesystem>

namespace stillgate::guard
{

namespace
{

constexpr auto program = "/usr/bin/systemctl";

/// Succeeds for an enabled unit. The program's own exit status is a success for one that can't be enabled, too.
constexpr auto isEnabledScript = R"(case $(/usr/bin/systemctl is-enabled "$1" 2>/dev/null) in
enabled*) ;;
*) exit 1 ;;
esac)";

bool isSystemdRunning()
{
    std::error_code ignored;
    return std::filesystem::is_directory("/run/systemd/system", ignored); // sd_booted(3)
}

} // namespace

DirectUnits::DirectUnits(ChildProcess& children)
    : m_children(children)
{}

Task<Result<void>> DirectUnits::enableAndStart(std::vector<std::string> units)
{
    const auto status = co_await systemctl({"enable", "--now"}, std::move(units));
    if (!status || *status != 0)
        co_return failure(SystemFailure{"enable units"});
    co_return Result<void>{};
}

Task<Result<void>> DirectUnits::stopAndDisable(std::vector<std::string> units)
{
    if (!std::filesystem::exists(program))
        co_return Result<void>{};
    // What counts is how things are afterwards: both fail for units that don't exist.
    if (isSystemdRunning())
        (void)co_await systemctl({"stop"}, units);
    (void)co_await systemctl({"disable"}, units);
    for (const auto& unit : units) {
        const auto isEnabled =
            co_await m_children.run({.program = "/bin/sh", .arguments = {"-c", isEnabledScript, "sh", unit}});
        if (co_await isActive(unit) || !isEnabled || *isEnabled == 0)
            co_return failure(SystemFailure{"stop and disable " + unit});
    }
    co_return Result<void>{};
}

Task<Result<void>> DirectUnits::mask(std::vector<std::string> units)
{
    if (!isSystemdRunning())
        co_return Result<void>{}; // and nobody starts them
    const auto status = co_await systemctl({"mask", "--runtime"}, std::move(units));
    if (!status || *status != 0)
        co_return failure(SystemFailure{"mask units"});
    co_return Result<void>{};
}

Task<bool> DirectUnits::isActive(std::string unit)
{
    const auto status = co_await systemctl({"is-active", "--quiet"}, {std::move(unit)});
    co_return status && *status == 0;
}

Task<Result<int>> DirectUnits::systemctl(std::vector<std::string> arguments, std::vector<std::string> units)
{
    arguments.insert(arguments.end(), units.begin(), units.end());
    return m_children.run({.program = program, .arguments = std::move(arguments)});
}

} // namespace stillgate::guard
