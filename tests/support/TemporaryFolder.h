#pragma once

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <unistd.h>

namespace stillgate::test
{

/// An empty folder, gone with this object.
class TemporaryFolder
{
public:
    TemporaryFolder()
    {
        auto name = (std::filesystem::temp_directory_path() / "stillgate-test.XXXXXX").string();
        if (::mkdtemp(name.data()) == nullptr)
            throw std::runtime_error{"no temporary folder"};
        m_path = name;
    }

    ~TemporaryFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }

    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const { return m_path; }

private:
    std::filesystem::path m_path;
};

inline void putFile(const std::filesystem::path& path, std::string_view bytes)
{
    std::filesystem::create_directories(path.parent_path());
    std::ofstream{path, std::ios::binary} << bytes;
}

inline std::string fileBytes(const std::filesystem::path& path)
{
    std::ostringstream bytes;
    bytes << std::ifstream{path, std::ios::binary}.rdbuf();
    return bytes.str();
}

} // namespace stillgate::test
