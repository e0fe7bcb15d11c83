#pragma once

#include "Platform/ChildProcess.h"
#include "Platform/FileManager.h"
#include "Platform/Host.h"
#include "Platform/HostsFileWriter.h"

#include <filesystem>

namespace stillgate
{

/// Changes the hosts file by a shell script, with the rights of this program.
///
/// The script is constant; what varies reaches it as arguments and on standard input, never as code.
class ScriptHostsFileWriter final : public HostsFileWriter
{
public:
    ScriptHostsFileWriter(std::filesystem::path hostsFile, FileManager& files, ChildProcess& children, Host& host);

    [[nodiscard]] Task<Result<void>> replaceBlock(
        std::string block, std::vector<std::string> temporaryNames, Permanence permanence) override;
    [[nodiscard]] Task<Result<void>> removeBlock() override;

private:
    struct Rewrite
    {
        std::string oldText;
        bool fileExists = false;
        std::string newText;
    };

    [[nodiscard]] Result<Rewrite> prepare(const std::string& block) const;
    [[nodiscard]] Task<Result<int>> runScript(Rewrite rewrite);

    std::filesystem::path m_hostsFile;
    FileManager& m_files;
    ChildProcess& m_children;
    Host& m_host;
};

} // namespace stillgate
