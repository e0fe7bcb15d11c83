#pragma once

#include "tests/server/ServerProcess.h"

#include <gtest/gtest.h>

namespace stillgate::test
{

/// The folder of the deployment that the program is built for, if that is one of this machine.
inline std::filesystem::path deploymentOfTheBuild()
{
    const auto folder = std::filesystem::path{STILLGATE_DEPLOYMENT}.parent_path();
    return std::filesystem::exists(folder / "authority.key") ? folder : std::filesystem::path{};
}

/// A server with a database of its own, and with the keys that the program trusts.
class TrustedServer
{
public:
    explicit TrustedServer(const std::filesystem::path& deployment)
    {
        m_server.kill();
        for (const auto* name : {"authority.key", "authority.pem", "server.key", "server.pem"})
            std::filesystem::copy_file(
                deployment / name, m_server.folder() / name, std::filesystem::copy_options::overwrite_existing);
        // The certificate may have run out since then.
        EXPECT_EQ(QProcess::execute(STILLGATE_SERVER_PROGRAM,
                      {"renew-certificate", "--folder", QString::fromStdString(m_server.folder())}),
            0);
        m_server.restart();
    }

    [[nodiscard]] ServerProcess& process() { return m_server; }

private:
    ServerProcess m_server;
};

} // namespace stillgate::test
