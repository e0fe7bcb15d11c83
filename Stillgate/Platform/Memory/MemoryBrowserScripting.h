#pragma once

#include "Platform/BrowserScripting.h"
#include "Platform/OneShotEvent.h"

#include <map>
#include <set>

namespace stillgate
{

/// Browsers whose tabs a test turns.
class MemoryBrowserScripting final : public BrowserScripting
{
public:
    [[nodiscard]] bool canAsk(std::string_view bundleIdentifier) const override
    {
        return askable.contains(bundleIdentifier);
    }

    [[nodiscard]] Task<std::optional<std::string>> addressOfFrontTab(
        std::shared_ptr<RunningApplication> browser) override
    {
        ++questions;
        const auto found = addresses.find(browser->bundleIdentifier().value_or(""));
        const auto answer = found != addresses.end() ? std::optional{found->second} : std::nullopt;
        if (const auto held = slowness)
            co_await *held;
        co_return answer;
    }

    std::set<std::string, std::less<>> askable{"org.mozilla.firefox", "com.google.chrome"};
    std::map<std::string, std::string> addresses; ///< what the front tab shows, by the identifier
    int questions = 0;
    std::shared_ptr<OneShotEvent> slowness; ///< what answers wait for, if there is one
};

} // namespace stillgate
