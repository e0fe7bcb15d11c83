#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace stillgate
{

/// The user's stored settings, by key. What is set is stored at once; a failure to store it is logged and the value
/// lives on for this run.
class UserDefaults
{
public:
    virtual ~UserDefaults() = default;

    /// Nothing if the key is missing or holds no text.
    [[nodiscard]] virtual std::optional<std::string> string(std::string_view key) const = 0;

    /// False if the key is missing or holds no truth value.
    [[nodiscard]] virtual bool boolean(std::string_view key) const = 0;

    virtual void setString(std::string_view key, std::string value) = 0;
    virtual void setBoolean(std::string_view key, bool value) = 0;
};

} // namespace stillgate
