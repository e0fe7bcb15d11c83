#include "Platform/Memory/MemoryFileManager.h"

#include <cerrno>

namespace stillgate
{

namespace fs = std::filesystem;

Result<std::string> MemoryFileManager::read(const fs::path& path) const
{
    readFiles.push_back(path);
    const auto found = files.find(path);
    if (found == files.end())
        return failure(SystemFailure{"open " + path.string(), ENOENT});
    if (unreadable.contains(path))
        return failure(SystemFailure{"open " + path.string(), EACCES});
    return found->second;
}

Result<void> MemoryFileManager::write(const fs::path& path, std::string_view bytes, WriteOptions)
{
    if (diskIsFull)
        return failure(SystemFailure{"write " + path.string(), ENOSPC});
    if (!folders.contains(path.parent_path()))
        return failure(SystemFailure{"write " + path.string(), ENOENT});
    put(path, std::string{bytes});
    return {};
}

Result<void> MemoryFileManager::move(const fs::path& from, const fs::path& to)
{
    auto moved = files.extract(from);
    if (moved.empty())
        return failure(SystemFailure{"move " + from.string(), ENOENT});
    files[to] = std::move(moved.mapped());
    return {};
}

Result<void> MemoryFileManager::remove(const fs::path& path)
{
    if (files.erase(path) == 0)
        return failure(SystemFailure{"remove " + path.string(), ENOENT});
    m_watched[path].notify();
    return {};
}

Result<void> MemoryFileManager::createDirectory(const fs::path& path)
{
    if (diskIsFull)
        return failure(SystemFailure{"create " + path.string(), ENOSPC});
    for (auto folder = path; folders.insert(folder).second;)
        folder = folder.parent_path();
    return {};
}

void MemoryFileManager::put(const fs::path& path, std::string bytes)
{
    for (auto folder = path.parent_path(); folders.insert(folder).second;)
        folder = folder.parent_path();
    files[path] = std::move(bytes);
    m_watched[path].notify();
}

std::unique_ptr<Observation> MemoryFileManager::onChange(const fs::path& path, std::function<void()> observer)
{
    return m_watched[path].add(std::move(observer));
}

} // namespace stillgate
