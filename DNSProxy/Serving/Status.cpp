#include "Serving/Status.h"

#include "DNSProxyVersion.h"

#include <algorithm>

namespace stillgate::dns
{

namespace
{

bool isNamed(const DomainName& name, std::string_view text)
{
    return name == DomainName::fromText(text);
}

} // namespace

std::optional<std::vector<std::string>> Status::answerTo(const DomainName& name) const
{
    if (isNamed(name, "version.stillgate"))
        return std::vector<std::string>{std::string{"stillgate-dnsproxy "} + version};
    if (isNamed(name, "health.stillgate"))
        return health();
    if (isNamed(name, "counts.stillgate"))
        return numbers();
    return std::nullopt;
}

std::vector<std::string> Status::health() const
{
    constexpr std::size_t longestText = 255;
    constexpr std::size_t mostFaults = 20; // what goes into an answer over UDP on loopback
    std::vector<std::string> texts;
    if (!hasUpstream)
        texts.emplace_back("no upstream");
    for (const auto& fault : faults) {
        if (texts.size() < mostFaults)
            texts.push_back(fault.substr(0, longestText));
    }
    if (texts.empty())
        texts.emplace_back("ok");
    return texts;
}

std::vector<std::string> Status::numbers() const
{
    const auto age = std::chrono::steady_clock::now() - m_start;
    const auto text = [](const char* name, auto number) { return std::string{name} + '=' + std::to_string(number); };
    return {text("queries", counts.queries), text("blocked", counts.blocked), text("forwarded", counts.forwarded),
        text("cached", counts.cached), text("failed", counts.failed), text("names", names), text("reloads", reloads),
        text("seconds", std::chrono::duration_cast<std::chrono::seconds>(age).count())};
}

} // namespace stillgate::dns
