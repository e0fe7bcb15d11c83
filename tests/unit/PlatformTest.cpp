#include "Platform/Cancellation.h"
#include "Platform/HostsBlock.h"
#include "Platform/Linux/JSONUserDefaults.h"
#include "Platform/Linux/ScriptHostsFileWriter.h"
#include "Platform/Memory/MemoryChildProcess.h"
#include "Platform/Memory/MemoryFileManager.h"
#include "Platform/Memory/MemoryHost.h"
#include "Platform/Memory/MemoryLog.h"
#include "Platform/NotificationCenter.h"
#include "Platform/OneShotEvent.h"
#include "tests/support/Await.h"

#include <gmock/gmock.h>

namespace stillgate
{

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

TEST(Settings, areStoredAtOnceAndReadBack)
{
    MemoryFileManager files;
    MemoryLog log;
    JSONUserDefaults defaults{"/config/defaults.json", files, log};
    EXPECT_FALSE(defaults.boolean("flag"));
    defaults.setBoolean("flag", true);
    defaults.setString("text", "\"quoted\"");

    const JSONUserDefaults restarted{"/config/defaults.json", files, log};
    EXPECT_TRUE(restarted.boolean("flag"));
    EXPECT_EQ(restarted.string("text"), "\"quoted\"");
    EXPECT_EQ(restarted.string("flag"), std::nullopt) << "a value of another type is none";
    EXPECT_FALSE(restarted.boolean("text"));
    EXPECT_THAT(log.lines, IsEmpty());
}

TEST(Settings, brokenFileIsKeptAside)
{
    for (const auto* broken : {"", "[]", "{\"flag\":tru", "\xff"}) {
        MemoryFileManager files;
        MemoryLog log;
        files.put("/config/defaults.json", broken);
        JSONUserDefaults defaults{"/config/defaults.json", files, log};
        EXPECT_FALSE(defaults.boolean("flag"));
        EXPECT_THAT(log.lines, SizeIs(1));
        EXPECT_EQ(files.at("/config/defaults.json"), broken) << "nothing is stored before something is set";
        defaults.setBoolean("flag", true);
        EXPECT_EQ(files.at("/config/defaults.json.broken"), broken);
        EXPECT_TRUE((JSONUserDefaults{"/config/defaults.json", files, log}.boolean("flag")));
    }
}

TEST(Settings, failureToStoreIsLoggedAndTheValueLivesOn)
{
    MemoryFileManager files;
    MemoryLog log;
    JSONUserDefaults defaults{"/config/defaults.json", files, log};
    files.diskIsFull = true;
    defaults.setString("text", "kept");
    EXPECT_EQ(defaults.string("text"), "kept");
    EXPECT_THAT(log.lines, SizeIs(1));
}

class HostsFileWriting : public testing::Test
{
protected:
    HostsFileWriting() { m_files.put(hostsPath, "127.0.0.1 localhost\n"); }

    bool write(const std::string& text)
    {
        return await(m_writer.replaceBlock(text, {}, Permanence::flexible)).has_value();
    }

    static constexpr auto block = "\n# Stillgate Protected Sites\n# End Stillgate\n";

    MemoryFileManager m_files;
    MemoryChildProcess m_children;
    MemoryHost m_host;
    ScriptHostsFileWriter m_writer{hostsPath, m_files, m_children, m_host};
};

TEST_F(HostsFileWriting, varyingTextIsNoPartOfTheCommand)
{
    m_children.answers = {[](const Command&) { return 0; }};
    EXPECT_TRUE(write(block));
    const auto& command = m_children.commands.front();
    EXPECT_EQ(command.program, "/bin/bash");
    EXPECT_EQ(command.standardInput, std::string{"127.0.0.1 localhost\n"} + block);
    EXPECT_EQ(command.arguments.at(4), std::to_string(command.standardInput.size()));
    for (const auto& argument : command.arguments)
        EXPECT_FALSE(argument.contains("localhost"));
}

TEST_F(HostsFileWriting, fileThatSomebodyChangesMeanwhileIsReadAgain)
{
    m_children.answers = {
        [this](const Command&) {
            m_files.files[hostsPath] = "127.0.0.1 localhost\n10.0.0.1 nas\n";
            return 75;
        },
        [](const Command&) { return 0; },
    };
    EXPECT_TRUE(write(block));
    EXPECT_TRUE(m_children.commands.back().standardInput.contains("10.0.0.1 nas\n"));
}

TEST_F(HostsFileWriting, endsAfterAFewTriesAndAtOnceOnAFailure)
{
    EXPECT_FALSE(write(block)) << "no shell";
    m_children.answers = {[](const Command&) { return 1; }};
    EXPECT_FALSE(write(block));
    EXPECT_THAT(m_children.commands, SizeIs(2));
    m_children.answers.assign(100, [](const Command&) { return 75; });
    EXPECT_FALSE(write(block));
    EXPECT_THAT(m_children.commands, SizeIs(7));
}

TEST_F(HostsFileWriting, unreadableFileIsNeverReplaced)
{
    m_files.unreadable.insert(hostsPath);
    EXPECT_FALSE(write(block));
    EXPECT_THAT(m_children.commands, IsEmpty());
}

TEST_F(HostsFileWriting, nothingToChangeStartsNoProcess)
{
    EXPECT_TRUE(await(m_writer.removeBlock()));
    m_files.files[hostsPath] += block;
    EXPECT_TRUE(write(block));
    EXPECT_THAT(m_children.commands, IsEmpty());
}

TEST(Observing, endsWithTheRegistrationAlsoFromWithinACall)
{
    NotificationCenter center;
    std::vector<std::string> seen;
    std::unique_ptr<Observation> second;
    const auto first = center.observe("event", [&] {
        seen.emplace_back("first");
        second.reset();
    });
    second = center.observe("event", [&] { seen.emplace_back("second"); });
    const auto other = center.observe("other", [&] { seen.emplace_back("other"); });
    center.post("event");
    center.post("unheard of");
    EXPECT_THAT(seen, ElementsAre("first"));

    std::unique_ptr<Observation> outliving;
    {
        NotificationCenter brief;
        outliving = brief.observe("event", [] {});
    }
}

TEST(Cancelling, reachesTokensAndTheirRegistrationsOnce)
{
    CancellationSource source;
    const auto token = source.token();
    int calls = 0;
    const auto registration = token.onCancel([&] { ++calls; });
    token.onCancel([&] { ++calls; }).reset();
    EXPECT_FALSE(token.isCancelled());
    source.cancel();
    source.cancel();
    EXPECT_TRUE(token.isCancelled() && source.token().isCancelled());
    EXPECT_EQ(calls, 1);
    EXPECT_FALSE(CancellationToken{}.isCancelled());
    EXPECT_EQ(CancellationToken{}.onCancel([] {}), nullptr);
}

} // namespace stillgate
