#pragma once

#include "tests/desktop/SignedInProgram.h"
#include "tests/guard/GuardMachine.h"

namespace stillgate::test
{

/// A machine on which Stillgate is installed, and anna's desktop on it: the program runs without any right of its own.
class InstalledProgramTest : public GuardTest, protected SignedInProgram
{
protected:
    void SetUp() override;

    /// Whether hosts file and DNS proxy both have these blocked, and open.example isn't.
    [[nodiscard]] static bool isEnforced(const std::string& domain);

private:
    std::optional<ApplicationProcess> m_sessionBus;
};

} // namespace stillgate::test
