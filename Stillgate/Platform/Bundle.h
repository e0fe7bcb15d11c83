#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace stillgate
{

/// The program as it was installed: its folder of resources and what was fixed about it when it was built.
class Bundle
{
public:
    virtual ~Bundle() = default;

    /// Resources lie in `Contents/Resources` below it.
    [[nodiscard]] virtual std::filesystem::path path() const = 0;

    /// "CFBundleShortVersionString" is the version, such as "1.2.0"; "STILLGATE_API_BASE_URL" and
    /// "STILLGATE_WEB_SITE_URL" are addresses. Nothing for an unknown key.
    [[nodiscard]] virtual std::optional<std::string> infoValue(std::string_view key) const = 0;
};

} // namespace stillgate
