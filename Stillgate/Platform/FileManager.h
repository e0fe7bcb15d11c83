#pragma once

#include "Models/Result.h"
#include "Platform/Observers.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace stillgate
{

/// How a file is written.
struct WriteOptions
{
    enum class Durability {
        synced,  ///< on the disk before the call returns
        relaxed, ///< whole or old after a crash of the program; perhaps lost after a crash of the machine
    };
    enum class Access {
        owner,         ///< mode 0600
        ownerAndGroup, ///< mode 0640: the group that the folder hands down may read
    };

    Durability durability = Durability::synced;
    Access access = Access::owner;
};

/// Files and the folders that belong to the program. Calls block, on the main thread; errors are SystemFailures.
class FileManager
{
public:
    virtual ~FileManager() = default;

    /// The user's folder for the data of programs.
    [[nodiscard]] virtual std::filesystem::path applicationSupportDirectory() const = 0;

    /// The folder that this program shares with the DNS proxy; nothing if there can't be one.
    [[nodiscard]] virtual std::optional<std::filesystem::path> groupContainer() const = 0;

    /// The whole of a regular file.
    [[nodiscard]] virtual Result<std::string> read(const std::filesystem::path& path) const = 0;

    /// Replaces the file whole: a reader sees the old bytes or the new ones, whatever happens in between.
    [[nodiscard]] virtual Result<void> write(
        const std::filesystem::path& path, std::string_view bytes, WriteOptions options) = 0;

    /// The file goes to its new name, over one that stands there.
    [[nodiscard]] virtual Result<void> move(const std::filesystem::path& from, const std::filesystem::path& to) = 0;

    [[nodiscard]] virtual Result<void> remove(const std::filesystem::path& path) = 0;

    /// Called after something has happened to the file: its bytes, its place, whether it is there. Perhaps once too
    /// often, perhaps once for several changes.
    [[nodiscard]] virtual std::unique_ptr<Observation> onChange(
        const std::filesystem::path& path, std::function<void()> observer) = 0;

    /// With its parents; one that exists is a success.
    [[nodiscard]] virtual Result<void> createDirectory(const std::filesystem::path& path) = 0;
};

} // namespace stillgate
