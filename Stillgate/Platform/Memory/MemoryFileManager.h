#pragma once

#include "Platform/FileManager.h"

#include <map>
#include <set>
#include <vector>

namespace stillgate
{

/// A disk in memory. Like a real one it has no folder that nobody made.
class MemoryFileManager final : public FileManager
{
public:
    [[nodiscard]] std::filesystem::path applicationSupportDirectory() const override
    {
        return "/home/ada/.local/share";
    }

    [[nodiscard]] std::optional<std::filesystem::path> groupContainer() const override { return container; }

    [[nodiscard]] Result<std::string> read(const std::filesystem::path& path) const override;
    [[nodiscard]] Result<void> write(
        const std::filesystem::path& path, std::string_view bytes, WriteOptions options) override;
    [[nodiscard]] Result<void> move(const std::filesystem::path& from, const std::filesystem::path& to) override;
    [[nodiscard]] Result<void> remove(const std::filesystem::path& path) override;
    [[nodiscard]] std::unique_ptr<Observation> onChange(
        const std::filesystem::path& path, std::function<void()> observer) override;
    [[nodiscard]] Result<void> createDirectory(const std::filesystem::path& path) override;

    /// A file as another program would have left it, with its folder.
    void put(const std::filesystem::path& path, std::string bytes);

    /// The bytes of a file that has to be there.
    [[nodiscard]] const std::string& at(const std::filesystem::path& path) const { return files.at(path); }

    [[nodiscard]] bool contains(const std::filesystem::path& path) const { return files.contains(path); }

    std::map<std::filesystem::path, std::string> files;
    std::set<std::filesystem::path> folders{"/"};
    std::set<std::filesystem::path> unreadable;
    std::optional<std::filesystem::path> container = "/var/lib/stillgate/group/1000";
    bool diskIsFull = false;
    mutable std::vector<std::filesystem::path> readFiles;

private:
    std::map<std::filesystem::path, Observers<>> m_watched;
};

} // namespace stillgate
