#pragma once

#include "Platform/Bundle.h"

#include <map>

namespace stillgate
{

class MemoryBundle final : public Bundle
{
public:
    [[nodiscard]] std::filesystem::path path() const override { return "/opt/stillgate"; }

    [[nodiscard]] std::optional<std::string> infoValue(std::string_view key) const override
    {
        const auto found = infoValues.find(key);
        return found == infoValues.end() ? std::nullopt : std::optional{found->second};
    }

    std::map<std::string, std::string, std::less<>> infoValues;
};

} // namespace stillgate
