#pragma once

#include "tests/guard/PolkitStandIn.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Waiting.h"

#include <QProcess>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>

namespace stillgate::test
{

/// The call of a user's process, under way or answered.
class UserCall
{
public:
    UserCall(uid_t user, const std::string& words, const std::string& input);

    [[nodiscard]] bool hasEnded() const { return m_process.state() == QProcess::NotRunning; }

    /// "done" with the values of the answer, or the last word of the error's name.
    std::string result();

    void die();

private:
    QProcess m_process;
};

/// A machine on which Stillgate is installed: a system bus with its configuration, the guard as a service that the bus
/// activates, its units run by stillgate-test-units, and polkit as a test wants it. In the world of
/// tests/guard/private-machine, and nowhere else.
class GuardTest : public testing::Test
{
protected:
    void SetUp() override;
    void TearDown() override;

    static std::string call(uid_t user, const std::string& words, const std::string& input = {})
    {
        return UserCall{user, words, input}.result();
    }

    static std::string replace(uid_t user, const std::string& mode, const std::vector<std::string>& domains);

    static std::string hosts() { return fileBytes("/etc/hosts"); }

    /// The hosts file with the block of these domains.
    static std::string hostsWith(const std::vector<std::string>& domains);

    /// "active enabled" and the like, of one of the units of packaging/.
    static std::string stateOf(const std::string& unit);

    /// A resolver, 10.9.9.9 and fd09::9, that the machine is told to use. It gives every name below example. the
    /// address 10.1.1.1. Questions to 203.0.113.7 come to nobody.
    static void startNetwork();
    static void startResolver(const std::string& options);

    /// What anna's program gets for a question as dig takes it: an address, NXDOMAIN, or a word about what went wrong.
    static std::string ask(const std::string& question, const std::string& server = "10.9.9.9");

    static void killGuard();
    void startUnits();
    void stopUnits();

    static constexpr auto original = "127.0.0.1 localhost\n192.168.1.5 nas\n";
    static constexpr uid_t anna = 2001;
    static constexpr uid_t ben = 2002;

    static constexpr auto block = "com.stillgate.guard.block";
    static constexpr auto unblock = "com.stillgate.guard.unblock";
    static constexpr auto unblockPermanent = "com.stillgate.guard.unblock-permanent";

    std::optional<PolkitStandIn> m_polkit;

private:
    std::unique_ptr<QProcess> m_units;
};

} // namespace stillgate::test
