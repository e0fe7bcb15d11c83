#include "Backend/KeychainService.h"

#include <QUrl>

namespace stillgate
{

namespace
{

constexpr char mask = 0x5a;

std::string masked(std::string_view bytes)
{
    std::string result{bytes};
    for (char& byte : result)
        byte = static_cast<char>(byte ^ mask);
    return result;
}

} // namespace

KeychainService::KeychainService(FileManager& files)
    : m_files(files)
    , m_storageDir(files.applicationSupportDirectory() / "com.stillgate.macos" / "secure")
{
    (void)m_files.createDirectory(m_storageDir);
}

void KeychainService::save(std::string_view key, std::string_view value)
{
    (void)m_files.write(fileOf(key), masked(value), {});
}

std::optional<std::string> KeychainService::load(std::string_view key) const
{
    const auto bytes = m_files.read(fileOf(key));
    if (!bytes)
        return std::nullopt;
    auto value = masked(*bytes);
    return QByteArrayView{value}.isValidUtf8() ? std::optional{std::move(value)} : std::nullopt;
}

void KeychainService::remove(std::string_view key)
{
    (void)m_files.remove(fileOf(key));
}

std::filesystem::path KeychainService::fileOf(std::string_view key) const
{
    // Only letters and digits stay bare: "sg%5Faccess%5Ftoken".
    const auto name = QString::fromUtf8(key.data(), static_cast<qsizetype>(key.size()));
    return m_storageDir / QUrl::toPercentEncoding(name, {}, "-._~").toStdString();
}

} // namespace stillgate
