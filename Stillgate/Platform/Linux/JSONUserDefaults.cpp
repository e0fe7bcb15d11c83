#include "Platform/Linux/JSONUserDefaults.h"

#include "Models/JSONCoding.h"

#include <QStandardPaths>

#include <cerrno>

namespace stillgate
{

JSONUserDefaults::JSONUserDefaults(std::filesystem::path file, FileManager& files, Log& log)
    : m_file(std::move(file))
    , m_files(files)
    , m_log(log)
{
    load();
}

std::filesystem::path JSONUserDefaults::standardFile()
{
    const auto folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation).toStdString();
    return std::filesystem::path{folder} / "com.stillgate.macos" / "defaults.json";
}

void JSONUserDefaults::load()
{
    const auto text = m_files.read(m_file);
    if (!text && text.error().systemCode() == ENOENT)
        return;
    auto values = text ? json::parse(*text) : std::unexpected{DecodingFailure{}};
    m_isBroken = !values || !values->is_object();
    if (m_isBroken)
        m_log.write("[Stillgate] Settings can't be read, starting with none: " + m_file.string());
    else
        m_values = std::move(*values);
}

std::optional<std::string> JSONUserDefaults::string(std::string_view key) const
{
    const auto found = m_values.find(key);
    if (found == m_values.end() || !found->is_string())
        return std::nullopt;
    return found->get<std::string>();
}

bool JSONUserDefaults::boolean(std::string_view key) const
{
    const auto found = m_values.find(key);
    return found != m_values.end() && found->is_boolean() && found->get<bool>();
}

void JSONUserDefaults::setString(std::string_view key, std::string value)
{
    store(key, std::move(value));
}

void JSONUserDefaults::setBoolean(std::string_view key, bool value)
{
    store(key, value);
}

void JSONUserDefaults::store(std::string_view key, nlohmann::json value)
{
    auto& stored = m_values[std::string{key}];
    if (stored == value)
        return;
    stored = std::move(value);
    if (const auto saved = save(); !saved)
        m_log.write("[Stillgate] Settings can't be stored: " + saved.error().description());
}

Result<void> JSONUserDefaults::save()
{
    if (auto made = m_files.createDirectory(m_file.parent_path()); !made)
        return made;
    if (m_isBroken) {
        if (auto moved = m_files.move(m_file, m_file.string() + ".broken"); !moved)
            return moved;
        m_isBroken = false;
    }
    const auto text = m_values.dump(2, ' ', false, nlohmann::json::error_handler_t::replace);
    return m_files.write(m_file, text + "\n", {});
}

} // namespace stillgate
