#include "Platform/Linux/LinuxBundle.h"

#include "BuildInfo.h"

#include <system_error>
#include <utility>

namespace stillgate
{

namespace fs = std::filesystem;

LinuxBundle::LinuxBundle(Deployment deployment)
    : m_deployment(std::move(deployment))
{}

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
    if (key == "STILLGATE_API_BASE_URL")
        return m_deployment.baseURL;
    if (key == "STILLGATE_WEB_SITE_URL")
        return m_deployment.webSiteURL;
    return std::nullopt;
}

} // namespace stillgate
