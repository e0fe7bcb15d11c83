#include "Blocking/BlockedConfigFile.h"

#include "Models/JSONCoding.h"

namespace stillgate
{

void BlockedConfigFile::keep(const BlockedConfig& config)
{
    const auto container = m_files.groupContainer();
    const auto text = JSONEncoder{DateForm::iso8601}.encode(config);
    if (!container || !text)
        return;
    (void)m_files.createDirectory(*container);
    const auto path = *container / "blocked-config.json";
    m_text = *text;
    // The container is another one once the guard has made it.
    if (!m_changes || path != m_path)
        m_changes = m_files.onChange(path, [this] { restore(); });
    m_path = path;
    write();
}

void BlockedConfigFile::leave()
{
    m_changes.reset();
}

void BlockedConfigFile::write()
{
    (void)m_files.write(m_path, m_text, {.access = WriteOptions::Access::ownerAndGroup});
}

void BlockedConfigFile::restore()
{
    if (m_files.read(m_path) != m_text)
        write();
}

} // namespace stillgate
