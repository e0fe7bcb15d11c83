#include "Platform/Linux/ScriptHostsFileWriter.h"

#include "Platform/HostsBlock.h"
#include "ReplaceHostsFileScript.h"

#include <QCryptographicHash>

#include <cerrno>

namespace stillgate
{

namespace
{

constexpr int changedMeanwhile = 75; // the script's status, EX_TEMPFAIL of sysexits.h
constexpr int attempts = 5;

std::string sha256(const std::string& text)
{
    const QByteArrayView bytes{text.data(), static_cast<qsizetype>(text.size())};
    return QCryptographicHash::hash(bytes.toByteArray(), QCryptographicHash::Sha256).toHex().toStdString();
}

} // namespace

ScriptHostsFileWriter::ScriptHostsFileWriter(
    std::filesystem::path hostsFile, FileManager& files, ChildProcess& children, Host& host)
    : m_hostsFile(std::move(hostsFile))
    , m_files(files)
    , m_children(children)
    , m_host(host)
{}

Task<Result<void>> ScriptHostsFileWriter::replaceBlock(
    std::string block, std::vector<std::string> /*temporaryNames*/, Permanence /*permanence*/)
{
    for (int attempt = 0; attempt < attempts; ++attempt) {
        auto rewrite = prepare(block);
        if (!rewrite)
            co_return std::unexpected{rewrite.error()};
        if (rewrite->newText == rewrite->oldText)
            co_return Result<void>{};
        const auto status = co_await runScript(std::move(*rewrite));
        if (!status)
            co_return std::unexpected{status.error()};
        if (*status == 0)
            co_return Result<void>{};
        if (*status != changedMeanwhile)
            break;
    }
    co_return failure(SystemFailure{"write " + m_hostsFile.string()});
}

Task<Result<void>> ScriptHostsFileWriter::removeBlock()
{
    return replaceBlock({}, {}, Permanence::flexible);
}

Result<ScriptHostsFileWriter::Rewrite> ScriptHostsFileWriter::prepare(const std::string& block) const
{
    auto text = m_files.read(m_hostsFile);
    const bool isMissing = !text && text.error().systemCode() == ENOENT;
    if (!text && !isMissing)
        return std::unexpected{text.error()};
    Rewrite rewrite{.oldText = isMissing ? std::string{} : std::move(*text), .fileExists = !isMissing};
    rewrite.newText = withoutHostsBlocks(rewrite.oldText, m_host.name()) + block;
    return rewrite;
}

Task<Result<int>> ScriptHostsFileWriter::runScript(Rewrite rewrite)
{
    return m_children.run({
        .program = "/bin/bash",
        .arguments = {"-c", replaceHostsFileScript, "replace-hosts-file", m_hostsFile.string(),
            std::to_string(rewrite.newText.size()), rewrite.fileExists ? sha256(rewrite.oldText) : "none"},
        .standardInput = std::move(rewrite.newText),
    });
}

} // namespace stillgate
