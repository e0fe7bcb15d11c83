#pragma once

#include "ChildProgram.h"
#include "tests/support/TemporaryFolder.h"

namespace stillgate
{

/// A home folder of somebody for whom setup is complete, with a backend that nobody can reach.
class Home
{
public:
    Home();

    void putSession() const;
    void putCache(const std::string& text) const;

    /// A call of the application, which lies beside this program.
    [[nodiscard]] ProgramCall call(std::vector<std::string> arguments = {}) const;

private:
    [[nodiscard]] std::filesystem::path config() const { return m_folder.path() / "config"; }

    [[nodiscard]] std::filesystem::path data() const { return m_folder.path() / "data/com.stillgate.macos"; }

    test::TemporaryFolder m_folder;
};

/// A program that was built with this one.
[[nodiscard]] std::string builtProgram(const std::string& name);

} // namespace stillgate
