#include "Platform/Linux/LinuxBundle.h"

#include "BuildInfo.h"

#include <system_error>

namespace stillgate
{

namespace fs = std::filesystem;

fs::path LinuxBundle::path() const
{
    std::error_code ignored;
    const auto program = fs::read_symlink("/proc/self/exe", ignored);
    return program.parent_path().parent_path() / "lib" / "stillgate";
}

std::optional<std::string> LinuxBundle::infoValue(std::string_view key) const
{
    if (key == "CFBundleShortVersionString")
        return buildinfo::version;
    return std::nullopt;
}

} // namespace stillgate
