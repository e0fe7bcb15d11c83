#include "tests/dnsproxy/ProxyProcess.h"

#include <array>
#include <csignal>
#include <fcntl.h>
#include <stdexcept>
#include <sys/prctl.h>
#include <sys/wait.h>

namespace stillgate::test
{

namespace
{

constexpr std::uint16_t text = 16;
constexpr std::uint16_t chaos = 3;

/// The number at the end of "Listening on 127.0.0.1:…".
std::uint16_t portIn(int output)
{
    std::string line;
    for (char letter = 0; isReadable(output) && ::read(output, &letter, 1) == 1 && letter != '\n';)
        line += letter;
    const auto colon = line.rfind(':');
    return colon == std::string::npos ? 0 : static_cast<std::uint16_t>(std::stoul(line.substr(colon + 1)));
}

} // namespace

ProxyProcess::ProxyProcess(Options options)
    : m_options(std::move(options))
{
    std::filesystem::create_directory(m_folder.path() / "group");
    if (!m_options.resolvConf.empty())
        putFile(m_folder.path() / "resolv.conf", m_options.resolvConf);
}

ProxyProcess::~ProxyProcess()
{
    kill();
}

void ProxyProcess::block(const std::string& user, const std::vector<std::string>& names)
{
    std::string list;
    for (const auto& name : names)
        list += (list.empty() ? "\"" : ",\"") + name + '"';
    putConfig(user, R"({"domains":[)" + list + R"(],"categories":["custom"]})");
}

void ProxyProcess::putConfig(const std::string& user, std::string_view bytes)
{
    const auto file = configOf(user);
    const auto temporary = file.string() + ".new";
    putFile(temporary, bytes);
    std::filesystem::rename(temporary, file);
}

void ProxyProcess::start()
{
    std::array<int, 2> output{};
    if (::pipe2(output.data(), O_CLOEXEC) != 0)
        throw std::runtime_error{"no pipe"};
    const FileDescriptor readEnd{output[0]};
    {
        const FileDescriptor writeEnd{output[1]};
        m_process = ::fork();
        if (m_process == 0)
            execute(writeEnd.number());
    }
    m_port = portIn(readEnd.number());
    static_cast<void>(status("version"));
}

void ProxyProcess::execute(int output) const
{
    ::prctl(PR_SET_PDEATHSIG, SIGKILL); // a test that crashes leaves no proxy behind
    const auto log = ::open((m_folder.path() / "log").c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
    ::dup2(output, STDOUT_FILENO);
    ::dup2(log, STDERR_FILENO);
    std::vector<std::string> arguments{STILLGATE_DNSPROXY_PROGRAM, "--listen", "127.0.0.1:0", "--group",
        m_folder.path() / "group", "--state", m_folder.path() / "state", "--resolv-conf",
        m_folder.path() / "resolv.conf"};
    for (const auto& upstream : m_options.upstreams)
        arguments.insert(arguments.end(), {"--upstream", upstream});
    std::vector<char*> pointers;
    for (auto& argument : arguments)
        pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    ::execv(pointers.front(), pointers.data());
    ::_exit(127);
}

void ProxyProcess::kill()
{
    if (m_process == 0)
        return;
    ::kill(m_process, SIGKILL);
    ::waitpid(std::exchange(m_process, 0), nullptr, 0);
}

int ProxyProcess::terminate()
{
    int status = 0;
    ::kill(m_process, SIGTERM);
    ::waitpid(std::exchange(m_process, 0), &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

Packet ProxyProcess::ask(const Ask& ask) const
{
    const auto socket = connectedSocket(SOCK_DGRAM, m_port);
    sendBytes(socket.number(), bytesOf(ask));
    const auto answer = datagramFrom(socket.number());
    if (!answer)
        throw std::runtime_error{"no answer to " + ask.name + "\n" + log()};
    return Packet::from(*answer);
}

Packet ProxyProcess::askByStream(const Ask& ask) const
{
    const auto socket = connectedSocket(SOCK_STREAM, m_port);
    sendBytes(socket.number(), streamMessage(bytesOf(ask)));
    const auto answer = streamMessageFrom(socket.number());
    if (!answer)
        throw std::runtime_error{"no answer to " + ask.name + "\n" + log()};
    return Packet::from(*answer);
}

std::string ProxyProcess::status(const std::string& name) const
{
    const auto packet = ask({.name = name + ".stillgate", .type = text, .recordClass = chaos, .edns = 4096});
    const auto* record = packet.find(text);
    std::string lines;
    for (std::size_t at = 0; record != nullptr && at < record->data.size(); at += 1U + record->data[at])
        lines.append(reinterpret_cast<const char*>(&record->data[at + 1]), record->data[at]).append("\n");
    return lines;
}

std::uint64_t ProxyProcess::count(const std::string& name) const
{
    const auto lines = '\n' + status("counts");
    const auto begin = lines.find('\n' + name + '=');
    if (begin == std::string::npos)
        throw std::runtime_error{"no count of " + name};
    return std::stoull(lines.substr(begin + name.size() + 2));
}

void ProxyProcess::waitUntil(const std::function<bool()>& condition) const
{
    const auto end = std::chrono::steady_clock::now() + longestWait;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end)
            throw std::runtime_error{"waited in vain: " + status("health") + status("counts") + log()};
    }
}

} // namespace stillgate::test
