#include "tests/dnsproxy/ProxyProcess.h"
#include "tests/dnsproxy/TestUpstream.h"

#include <gtest/gtest.h>

#include <atomic>
#include <sys/stat.h>
#include <thread>

namespace stillgate
{

using namespace test;
namespace fs = std::filesystem;

namespace
{

std::vector<std::string> manyNames(int first, int count)
{
    std::vector<std::string> names{"always.example"};
    for (int number = first; number < first + count; ++number)
        names.push_back("n" + std::to_string(number) + ".example");
    return names;
}

class Reload : public testing::Test
{
protected:
    void waitForReload(std::uint64_t number)
    {
        m_proxy.waitUntil([&] { return m_proxy.count("reloads") >= number; });
    }

    TestUpstream m_upstream;
    ProxyProcess m_proxy{{.upstreams = {m_upstream.address()}}};
};

} // namespace

TEST_F(Reload, swapsWholeSetsWhileEveryQueryIsAnswered)
{
    m_proxy.block("1000", manyNames(0, 100'000));
    m_proxy.start();
    std::atomic<bool> isOver = false;
    std::atomic<int> asked = 0;
    std::atomic<int> wrong = 0;
    std::thread asking{[&] {
        const auto socket = connectedSocket(SOCK_DGRAM, m_proxy.port());
        while (!isOver) {
            sendBytes(socket.number(), bytesOf({.name = "always.example"}));
            const auto answer = datagramFrom(socket.number());
            wrong += answer && Packet::from(*answer).code() == 3 ? 0 : 1;
            ++asked;
        }
    }};
    for (int reload = 1; reload <= 5; ++reload) {
        m_proxy.block("1000", manyNames(reload * 1000, 100'000));
        waitForReload(static_cast<std::uint64_t>(reload));
        EXPECT_TRUE(m_proxy.isBlocked("n" + std::to_string(reload * 1000) + ".example"));
        EXPECT_FALSE(m_proxy.isBlocked("n" + std::to_string(reload * 1000 - 1) + ".example"));
    }
    isOver = true;
    asking.join();
    EXPECT_EQ(wrong, 0);
    EXPECT_GT(asked, 100);
    EXPECT_EQ(m_proxy.count("names"), 100'002U);
}

TEST_F(Reload, newUsersComeAndGoneOnesLeaveNothing)
{
    fs::remove(m_proxy.folder() / "group");
    m_proxy.start();
    EXPECT_FALSE(m_proxy.isBlocked("a.example"));
    fs::create_directory(m_proxy.folder() / "group");
    fs::create_directory(m_proxy.folder() / "group" / "1000");
    m_proxy.block("1000", {"a.example"});
    waitForReload(1);
    m_proxy.block("1001", {"a.example", "b.example"});
    waitForReload(2);
    EXPECT_EQ(m_proxy.status("health"), "ok\n");
    fs::remove_all(m_proxy.folder() / "group" / "1001");
    waitForReload(3);
    EXPECT_TRUE(m_proxy.isBlocked("a.example"));
    EXPECT_FALSE(m_proxy.isBlocked("b.example"));
    EXPECT_FALSE(fs::exists(m_proxy.folder() / "state" / "1001.set"));
}

TEST_F(Reload, damagedFilesChangeNothingEvenAfterACrash)
{
    m_proxy.block("1000", {"a.example"});
    m_proxy.start();
    const auto expectInForceAndTold = [&] {
        m_proxy.waitUntil([&] { return m_proxy.status("health").starts_with("user 1000: "); });
        EXPECT_TRUE(m_proxy.isBlocked("www.a.example"));
        EXPECT_EQ(m_proxy.ask({.name = "open.example"}).code(), 0);
    };

    m_proxy.putConfig("1000", R"({"domains":["b.exa)");
    expectInForceAndTold();
    m_proxy.block("1000", {"a.example", "more.example"});
    waitForReload(1);
    EXPECT_EQ(m_proxy.status("health"), "ok\n");

    const auto file = m_proxy.configOf("1000");
    fs::remove(file);
    ASSERT_EQ(::mkfifo(file.c_str(), 0666), 0);
    expectInForceAndTold();
    m_proxy.kill();
    m_proxy.start();
    expectInForceAndTold();
    EXPECT_TRUE(m_proxy.isBlocked("more.example"));
}

TEST_F(Reload, forgetsAnswersThatTheNewSetForbids)
{
    m_upstream.answer("alias.example.", {{.name = "alias.example", .type = 5, .data = nameBytes("new.example")}});
    m_proxy.block("1000", {"a.example"});
    m_proxy.start();
    EXPECT_FALSE(m_proxy.isBlocked("alias.example"));
    m_proxy.block("1000", {"new.example"});
    waitForReload(1);
    EXPECT_TRUE(m_proxy.isBlocked("alias.example"));
}

} // namespace stillgate
