#include "ChildProgram.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace stillgate
{

namespace
{

using Texts = std::vector<std::string>;

Texts environmentOf(const ProgramCall& call)
{
    Texts environment;
    for (const auto& [name, value] : call.environment)
        environment.push_back(std::string{name}.append("=").append(value));
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string inherited{*entry};
        const auto name = inherited.substr(0, inherited.find('='));
        if (std::ranges::find(call.environment, name, &std::pair<std::string, std::string>::first) ==
            call.environment.end())
            environment.push_back(inherited);
    }
    return environment;
}

/// In the form of execve(2); valid while `texts` is.
std::vector<char*> nullTerminated(Texts& texts)
{
    std::vector<char*> pointers;
    for (auto& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

} // namespace

ChildProgram::ChildProgram(const ProgramCall& call)
{
    Texts arguments{call.program};
    arguments.insert(arguments.end(), call.arguments.begin(), call.arguments.end());
    auto environment = environmentOf(call);

    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    ::posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    const auto problem = ::posix_spawnp(&m_process, call.program.c_str(), &actions, nullptr,
        nullTerminated(arguments).data(), nullTerminated(environment).data());
    ::posix_spawn_file_actions_destroy(&actions);
    if (problem != 0)
        m_process = 0;
}

ChildProgram::~ChildProgram()
{
    if (!hasStarted())
        return;
    ::kill(m_process, SIGKILL);
    (void)wait();
}

void ChildProgram::terminate()
{
    if (hasStarted())
        ::kill(m_process, SIGTERM);
}

std::optional<int> ChildProgram::wait()
{
    if (!hasStarted())
        return std::nullopt;
    int status = 0;
    pid_t ended = 0;
    do
        ended = ::waitpid(m_process, &status, 0);
    while (ended < 0 && errno == EINTR);
    m_process = 0;
    if (ended < 0 || !WIFEXITED(status))
        return std::nullopt;
    return WEXITSTATUS(status);
}

} // namespace stillgate
