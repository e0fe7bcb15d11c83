#include "tests/desktop/InstalledProgram.h"

#include <gmock/gmock.h>

namespace stillgate::test
{

using testing::AnyOf;
using testing::HasSubstr;
using testing::Not;

namespace
{

QStringList firefoxOptions(const std::filesystem::path& profile)
{
    putFile(profile / "user.js",
        "user_pref('browser.aboutwelcome.enabled', false);\n"
        "user_pref('datareporting.policy.dataSubmissionEnabled', false);\n");
    return {"--new-instance", "--profile", QString::fromStdString(profile)};
}

} // namespace

class InstalledEnforcement : public InstalledProgramTest
{
protected:
    void startAndEnforce(const std::string& domain)
    {
        start();
        EXPECT_TRUE(becomes([&] { return isEnforced(domain); })) << hosts() << ask(domain) << program().output();
    }

    /// The screen comes for what this browser shows, and again while it stays, and goes with the browser.
    void expectScreenOver(const QStringList& options, const QString& browser)
    {
        {
            const ApplicationProcess process{home, options, browser};
            EXPECT_TRUE(blockScreenComes()) << options.join(' ').toStdString();
            press("Escape");
            EXPECT_TRUE(blockScreenGoes());
            EXPECT_TRUE(blockScreenComes()) << "the tab stays, and so does the block";
        }
        press("Escape");
        EXPECT_TRUE(blockScreenGoes());
    }

    [[nodiscard]] std::filesystem::path profile() const { return home.path() / "profile"; }
};

TEST_F(InstalledEnforcement, noWayOfAskingGetsTheAddressOfABlockedName)
{
    makeRule({}, {"video.example"});
    startAndEnforce("video.example");
    for (const std::string server : {"10.9.9.9", "203.0.113.7", "fd09::9"}) {
        for (const std::string question :
            {"video.example A", "video.example AAAA", "video.example HTTPS", "video.example ANY", "+tcp video.example",
                "+noedns video.example", "+dnssec +bufsize=4096 video.example", "VIDEO.eXample", "video.example.",
                "www.video.example", "one.2.three.4.five.6.seven.8.video.example", "+cd +tcp cdn.video.example TXT"})
            EXPECT_EQ(ask(question, server), "NXDOMAIN") << question << " @" << server;
        EXPECT_EQ(ask("notvideo.example", server), "10.1.1.1") << "it merely ends in the same letters";
        EXPECT_EQ(ask("video.example.example", server), "10.1.1.1");
    }
    EXPECT_THAT(shell("getent ahostsv6 video.example; getent ahostsv4 www.video.example"),
        AnyOf("", HasSubstr("127.0.0.1"), HasSubstr("::1")));
    EXPECT_THAT(shell("getent ahosts video.example cdn.video.example"), Not(HasSubstr("10.1.1.1")));
    EXPECT_EQ(
        shell("curl --silent --max-time 5 --output /dev/null --write-out '%{remote_ip}' http://video.example/; "
              "curl --silent --max-time 5 --output /dev/null --write-out '%{remote_ip}' http://cdn.video.example/"),
        "");
    EXPECT_THAT(shell("getent ahostsv4 notvideo.example"), HasSubstr("10.1.1.1"));
}

TEST_F(InstalledEnforcement, siteOfACategoryBringsUpTheScreenInChromiumAlsoInPrivate)
{
    const std::string listed = "10bet.com"; // of DNSProxy/block-lists/gambling.json
    makeRule({}, {}, "flexible", "gambling");
    startAndEnforce(listed);
    const auto address = QString::fromStdString("https://www." + listed + "/");
    expectScreenOver(chromiumOptions(profile(), address), "chromium");
    expectScreenOver(QStringList{"--incognito"} + chromiumOptions(profile(), address), "chromium");
}

TEST_F(InstalledEnforcement, guardiansSiteBringsUpTheScreenInFirefoxAlsoInPrivate)
{
    makeGuardianRule(linkGuardian(), {}, {"video.example"});
    start();
    const auto options = firefoxOptions(profile());
    shell("chown -R anna: " + home.path().string());
    expectScreenOver(options + QStringList{"http://video.example/"}, "firefox-esr");
    expectScreenOver(options + QStringList{"--private-window", "http://video.example/"}, "firefox-esr");
}

TEST_F(InstalledEnforcement, usedUpDayForbidsNothingByItselfAndAStrictGuardianEndsApps)
{
    const auto connection = linkGuardian();
    limitDay(connection, 30);
    reportUsage(45);
    start();
    const ApplicationProcess allowed{home, {"--disable-server"}, "mousepad"};
    EXPECT_TRUE(becomes([&] { return !windowOf(allowed).empty(); }));
    EXPECT_FALSE(isBlockScreenUp()) << "a used-up day forbids no app by itself";

    makeGuardianRule(connection, {terminal}, {});
    makePermanent(connection);
    start();
    const ApplicationProcess forbidden{home, {}, "xterm"};
    EXPECT_TRUE(blockScreenComes());
    EXPECT_TRUE(becomes([&] { return !forbidden.isRunning(); })) << "the guardian's mode is for every app";
    EXPECT_TRUE(allowed.isRunning());
    press("Escape");
    EXPECT_TRUE(blockScreenGoes());
}

} // namespace stillgate::test
