#pragma once

#include <optional>
#include <string>
#include <sys/types.h>
#include <utility>
#include <vector>

namespace stillgate
{

/// A program to be run. What it prints is thrown away.
struct ProgramCall
{
    std::string program;                                          ///< looked up in PATH if it has no slash
    std::vector<std::string> arguments;                           ///< behind the program's name
    std::vector<std::pair<std::string, std::string>> environment; ///< in place of, or beside, what is inherited
};

/// A running program; killed at the end of this object if it hasn't ended.
class ChildProgram
{
public:
    explicit ChildProgram(const ProgramCall& call);
    ~ChildProgram();

    ChildProgram(const ChildProgram&) = delete;
    ChildProgram& operator=(const ChildProgram&) = delete;

    [[nodiscard]] bool hasStarted() const { return m_process > 0; }

    /// 0 if there is none, or none any more.
    [[nodiscard]] pid_t pid() const { return m_process; }

    void terminate();

    /// Waits for the end: the exit status; nothing if it was a signal, or the program hasn't started.
    [[nodiscard]] std::optional<int> wait();

private:
    pid_t m_process = 0;
};

} // namespace stillgate
