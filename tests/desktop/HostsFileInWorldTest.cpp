#include "Blocking/HostsEntries.h"
#include "Platform/HostsBlock.h"
#include "Platform/Linux/LinuxChildProcess.h"
#include "Platform/Linux/LinuxFileManager.h"
#include "Platform/Linux/LinuxHost.h"
#include "Platform/Linux/ScriptHostsFileWriter.h"
#include "tests/desktop/PrivateWorld.h"
#include "tests/support/Await.h"

#include <gmock/gmock.h>

namespace stillgate
{

using namespace test;

/// What the script does on the machine's own files, in a world where they are ours.
class HostsFileInWorld : public PrivateWorldTest
{
protected:
    void SetUp() override
    {
        PrivateWorldTest::SetUp();
        putFile(hostsPath, original);
    }

    bool replace() { return await(m_writer.replaceBlock(m_block, {}, Permanence::flexible)).has_value(); }

    static constexpr auto original = "127.0.0.1 localhost\n";
    LinuxFileManager m_files;
    LinuxChildProcess m_children;
    LinuxHost m_host;
    ScriptHostsFileWriter m_writer{hostsPath, m_files, m_children, m_host};
    std::string m_block = generateHostsEntries({"a.example", "b.example"});
};

TEST_F(HostsFileInWorld, mountPointIsWrittenInPlace)
{
    shell("cp /etc/hosts /mnt/hosts; mount --bind /mnt/hosts /etc/hosts");
    EXPECT_TRUE(replace());
    EXPECT_EQ(fileBytes("/mnt/hosts"), original + m_block);
    EXPECT_TRUE(await(m_writer.removeBlock()));
    EXPECT_EQ(fileBytes(hostsPath), original);
    EXPECT_EQ(shell("ls /etc | grep hosts.stillgate"), "");
}

TEST_F(HostsFileInWorld, mountPointOnAFullDiskKeepsTheOldText)
{
    shell("mkdir /mnt/small; mount -t tmpfs -o size=16k small /mnt/small; cp /etc/hosts /mnt/small/hosts;"
          "dd if=/dev/zero of=/mnt/small/filler bs=1k count=8; mount --bind /mnt/small/hosts /etc/hosts");
    std::vector<std::string> domains;
    for (int i = 0; i < 500; ++i)
        domains.push_back(std::to_string(i) + ".example");
    m_block = generateHostsEntries(domains);
    EXPECT_FALSE(replace());
    EXPECT_EQ(fileBytes(hostsPath), original);
}

TEST_F(HostsFileInWorld, readOnlyFileIsRefused)
{
    shell("cp /etc/hosts /mnt/hosts; mount --bind /mnt/hosts /etc/hosts; mount -o remount,bind,ro /etc/hosts");
    EXPECT_FALSE(replace());
    EXPECT_EQ(fileBytes(hostsPath), original);
    EXPECT_EQ(shell("ls /etc | grep hosts.stillgate"), "");
}

TEST_F(HostsFileInWorld, mountPointInAReadOnlyFolderIsWrittenInPlace)
{
    shell(
        "cp -a /etc /mnt/etc; mount --bind /mnt/etc /etc; cp /etc/hosts /mnt/hosts; mount --bind /mnt/hosts /etc/hosts;"
        "mount -o remount,bind,ro /etc");
    EXPECT_TRUE(replace());
    EXPECT_EQ(fileBytes("/mnt/hosts"), original + m_block);
}

TEST_F(HostsFileInWorld, textThatCannotBePutBackIsKept)
{
    // The disk fills up between the two writes, and what was there fits no more.
    shell(
        R"(mkdir /mnt/small; mount -t tmpfs -o size=16k small /mnt/small; head -c 12000 /dev/zero | tr '\0' '#' >/etc/hosts
             mkdir /mnt/tools
             cp /etc/hosts /mnt/small/hosts; mount --bind /mnt/small/hosts /etc/hosts
             printf '#!/bin/bash\n[[ $2 != *.old ]] || dd if=/dev/zero of=/mnt/small/filler\nexec /mnt/cat "$@"\n' \
                 >/mnt/tools/cat
             cp /bin/cat /mnt/cat; chmod +x /mnt/tools/cat; mount --bind /mnt/tools/cat /bin/cat)");
    const auto before = fileBytes(hostsPath);
    std::vector<std::string> domains;
    for (int i = 0; i < 500; ++i)
        domains.push_back(std::to_string(i) + ".example");
    m_block = generateHostsEntries(domains);
    EXPECT_FALSE(replace());
    EXPECT_TRUE(fileBytes(hostsPath) != before) << "else this test shows nothing";
    EXPECT_TRUE(shell("/mnt/cat /etc/hosts.stillgate.*.old") == before);
}

TEST_F(HostsFileInWorld, cacheOfNamesIsFlushedAndMayHang)
{
    shell(R"(mount -t tmpfs run /run; mkdir -p /run/systemd/resolve /run/tools
             perl -MSocket -e 'socket(S, AF_UNIX, SOCK_STREAM, 0);
                 bind(S, sockaddr_un("/run/systemd/resolve/io.systemd.Resolve"))'
             mount -t tmpfs sbin /usr/local/sbin
             printf '#!/bin/bash\necho "$@" >>/run/flushed; sleep 600\n' >/run/tools/resolvectl
             chmod +x /run/tools/resolvectl
             mkdir /run/upper /run/work
             mount -t overlay -o lowerdir=/run/tools:/usr/sbin stillgate-tools /usr/sbin)");
    EXPECT_TRUE(replace());
    EXPECT_EQ(fileBytes("/run/flushed"), "flush-caches\n");
}

} // namespace stillgate
