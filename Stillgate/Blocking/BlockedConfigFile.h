#pragma once

#include "Blocking/BlockedConfig.h"
#include "Platform/FileManager.h"

namespace stillgate
{

/// `blocked-config.json` in the group container, for the DNS proxy.
///
/// THREAT: the file is the user's own, and an empty one would be as good as any to the proxy. So it is written again
/// whenever it is another one than was written last.
class BlockedConfigFile
{
public:
    explicit BlockedConfigFile(FileManager& files)
        : m_files(files)
    {}

    /// Writes it, and keeps it so. A file that can't be written stays as it is.
    void keep(const BlockedConfig& config);

    /// From now on, whoever likes may change it.
    void leave();

private:
    void write();
    void restore();

    FileManager& m_files;
    std::filesystem::path m_path;
    std::string m_text;
    std::unique_ptr<Observation> m_changes;
};

} // namespace stillgate
