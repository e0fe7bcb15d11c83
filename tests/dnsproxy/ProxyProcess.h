#pragma once

#include "tests/dnsproxy/TestSocket.h"
#include "tests/support/TemporaryFolder.h"

#include <functional>
#include <sys/types.h>

namespace stillgate::test
{

/// A stillgate-dnsproxy of its own, on a free port of 127.0.0.1, with users' folders and stored sets in a temporary
/// folder. It is killed at the end of this object.
class ProxyProcess
{
public:
    struct Options
    {
        std::vector<std::string> upstreams = {}; ///< ADDRESS:PORT
        std::string resolvConf = {};             ///< the text of one, which makes the upstreams; empty for none
    };

    explicit ProxyProcess(Options options);
    ~ProxyProcess();

    ProxyProcess(ProxyProcess&&) = delete;

    [[nodiscard]] std::filesystem::path folder() const { return m_folder.path(); }

    [[nodiscard]] std::filesystem::path configOf(const std::string& user) const
    {
        return m_folder.path() / "group" / user / "blocked-config.json";
    }

    /// Puts the user's file there by a rename, as the application does.
    void block(const std::string& user, const std::vector<std::string>& names);
    void putConfig(const std::string& user, std::string_view text);

    /// Starts it, and returns when it answers.
    void start();
    void kill();

    /// By SIGTERM; the exit status.
    [[nodiscard]] int terminate();

    [[nodiscard]] std::uint16_t port() const { return m_port; }

    /// Throws std::runtime_error if there is none.
    [[nodiscard]] Packet ask(const Ask& ask) const;
    [[nodiscard]] Packet askByStream(const Ask& ask) const;

    [[nodiscard]] bool isBlocked(const std::string& name) const { return ask({.name = name}).code() == 3; }

    /// What a name below "stillgate" says, one text a line.
    [[nodiscard]] std::string status(const std::string& name) const;

    /// One of the numbers of counts.stillgate.
    [[nodiscard]] std::uint64_t count(const std::string& name) const;

    /// Asks again and again until it is true. Throws std::runtime_error if that takes too long.
    void waitUntil(const std::function<bool()>& condition) const;

    /// What it has written to standard error.
    [[nodiscard]] std::string log() const { return fileBytes(m_folder.path() / "log"); }

private:
    [[noreturn]] void execute(int output) const;

    TemporaryFolder m_folder;
    Options m_options;
    pid_t m_process = 0;
    std::uint16_t m_port = 0;
};

} // namespace stillgate::test
