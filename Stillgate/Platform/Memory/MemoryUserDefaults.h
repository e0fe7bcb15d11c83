#pragma once

#include "Platform/UserDefaults.h"

#include <map>

namespace stillgate
{

class MemoryUserDefaults final : public UserDefaults
{
public:
    [[nodiscard]] std::optional<std::string> string(std::string_view key) const override
    {
        const auto found = strings.find(key);
        return found == strings.end() ? std::nullopt : std::optional{found->second};
    }

    [[nodiscard]] bool boolean(std::string_view key) const override
    {
        const auto found = booleans.find(key);
        return found != booleans.end() && found->second;
    }

    void setString(std::string_view key, std::string value) override
    {
        strings.insert_or_assign(std::string{key}, std::move(value));
    }

    void setBoolean(std::string_view key, bool value) override { booleans.insert_or_assign(std::string{key}, value); }

    std::map<std::string, std::string, std::less<>> strings;
    std::map<std::string, bool, std::less<>> booleans;
};

} // namespace stillgate
