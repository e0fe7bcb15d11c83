#pragma once

#include <span>
#include <string>
#include <variant>

namespace stillgate
{

struct RunDesktop
{};

struct RunHeadless
{};

/// Sign in by a link in the terminal, and end.
struct SignIn
{};

/// Text for standard output, after which the program has done what it was asked for.
struct PrintAndExit
{
    std::string text;
};

/// Arguments that make no sense: text for standard error.
struct UsageError
{
    std::string text;
};

using CommandLineRequest = std::variant<RunDesktop, RunHeadless, SignIn, PrintAndExit, UsageError>;

/// What the arguments, without the program's own name, ask for.
[[nodiscard]] CommandLineRequest parseCommandLine(std::span<const std::string> arguments, const std::string& version);

} // namespace stillgate
