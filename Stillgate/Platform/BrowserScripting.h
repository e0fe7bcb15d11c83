#pragma once

#include "Platform/Task.h"
#include "Platform/Workspace.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace stillgate
{

/// Asks browsers what they show. Main thread only.
class BrowserScripting
{
public:
    virtual ~BrowserScripting() = default;

    /// Whether a browser with this bundle identifier, in lower case, answers questions on this platform.
    [[nodiscard]] virtual bool canAsk(std::string_view bundleIdentifier) const = 0;

    /// The address of the page in the front tab of the front window, with its scheme, as the browser gives it. Of a
    /// page that could not be loaded, the address that was asked for. Nothing if the browser doesn't tell.
    ///
    /// THREAT: the answer is a stranger's text; it goes into no log.
    [[nodiscard]] virtual Task<std::optional<std::string>> addressOfFrontTab(
        std::shared_ptr<RunningApplication> browser) = 0;
};

} // namespace stillgate
