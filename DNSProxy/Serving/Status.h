#pragma once

#include "Message/DomainName.h"

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace stillgate::dns
{

/// What happened since the start. Numbers only: no name that anybody has asked for is kept.
struct Counts
{
    std::uint64_t queries = 0;
    std::uint64_t blocked = 0;
    std::uint64_t forwarded = 0;
    std::uint64_t cached = 0; ///< answered from the cache
    std::uint64_t failed = 0; ///< no upstream has answered
};

/// How the program is, in answers to questions of class CHAOS (as RFC 4892 has them): `version.stillgate`,
/// `health.stillgate`, `counts.stillgate`.
class Status
{
public:
    Counts counts;
    std::size_t names = 0; ///< that are blocked
    std::uint64_t reloads = 0;
    bool hasUpstream = false;
    std::vector<std::string> faults; ///< of the users' files

    /// The texts, 255 bytes at most each; nothing if there is no such name.
    [[nodiscard]] std::optional<std::vector<std::string>> answerTo(const DomainName& name) const;

private:
    [[nodiscard]] std::vector<std::string> health() const;
    [[nodiscard]] std::vector<std::string> numbers() const;

    std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
};

} // namespace stillgate::dns
