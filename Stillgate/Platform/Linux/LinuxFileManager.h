#pragma once

#include "Platform/FileManager.h"

namespace stillgate
{

/// Files by POSIX calls, folders by the XDG Base Directory Specification.
class LinuxFileManager final : public FileManager
{
public:
    /// `$XDG_DATA_HOME`, or `~/.local/share`.
    [[nodiscard]] std::filesystem::path applicationSupportDirectory() const override;

    /// `/var/lib/stillgate/group/<uid>` where the guard has made it, since home folders are closed to services; else
    /// `group.com.stillgate.macos` beside the user's own data.
    [[nodiscard]] std::optional<std::filesystem::path> groupContainer() const override;

    [[nodiscard]] Result<std::string> read(const std::filesystem::path& path) const override;
    [[nodiscard]] Result<void> write(
        const std::filesystem::path& path, std::string_view bytes, WriteOptions options) override;
    [[nodiscard]] Result<void> move(const std::filesystem::path& from, const std::filesystem::path& to) override;
    [[nodiscard]] Result<void> remove(const std::filesystem::path& path) override;
    [[nodiscard]] std::unique_ptr<Observation> onChange(
        const std::filesystem::path& path, std::function<void()> observer) override;
    [[nodiscard]] Result<void> createDirectory(const std::filesystem::path& path) override;
};

} // namespace stillgate
