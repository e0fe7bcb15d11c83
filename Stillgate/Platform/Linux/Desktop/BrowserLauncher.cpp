#include "Platform/Linux/Desktop/BrowserLauncher.h"

#include "Platform/Linux/FileDescriptor.h"
#include "Platform/WebAddress.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>

namespace stillgate
{

namespace
{

/// How a child starts that has nothing to do with us: none of our files, none of the signals that we hold back or
/// ignore, and a session of its own, so that it outlives us.
class Detached
{
public:
    Detached()
    {
        posix_spawn_file_actions_init(&files);
        for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
            posix_spawn_file_actions_addopen(&files, standard, "/dev/null", O_RDWR, 0);
        posix_spawn_file_actions_addclosefrom_np(&files, STDERR_FILENO + 1);

        posix_spawnattr_init(&attributes);
        posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
        sigset_t signals;
        sigemptyset(&signals);
        posix_spawnattr_setsigmask(&attributes, &signals);
        sigfillset(&signals);
        posix_spawnattr_setsigdefault(&attributes, &signals);
    }

    ~Detached()
    {
        posix_spawnattr_destroy(&attributes);
        posix_spawn_file_actions_destroy(&files);
    }

    Detached(const Detached&) = delete;
    Detached& operator=(const Detached&) = delete;

    posix_spawn_file_actions_t files{};
    posix_spawnattr_t attributes{};
};

/// Takes note of the child's end, whenever that is, so that it leaves no zombie.
void reap(pid_t child)
{
    const auto process = std::make_shared<FileDescriptor>(static_cast<int>(::syscall(SYS_pidfd_open, child, 0)));
    auto* end = new QSocketNotifier{process->number(), QSocketNotifier::Read, QCoreApplication::instance()};
    QObject::connect(end, &QSocketNotifier::activated, end, [end, process, child] {
        ::waitpid(child, nullptr, 0);
        end->setEnabled(false);
        end->deleteLater();
    });
}

} // namespace

void openInBrowser(const std::string& url, Log& log)
{
    auto address = webAddress(url);
    if (!address) {
        log.write("[Workspace] Not opened: no http or https address");
        return;
    }
    std::string program = "xdg-open";
    char* const arguments[] = {program.data(), address->data(), nullptr};
    const Detached how;
    pid_t child = -1;
    const int error = ::posix_spawnp(&child, program.c_str(), &how.files, &how.attributes, arguments, environ);
    if (error != 0) {
        log.write(std::string{"[Workspace] Failed to start xdg-open: "} + std::strerror(error));
        return;
    }
    reap(child);
}

} // namespace stillgate
