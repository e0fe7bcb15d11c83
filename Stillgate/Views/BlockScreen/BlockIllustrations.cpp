#include "Views/BlockScreen/BlockIllustrations.h"

#include <array>
#include <string_view>

namespace stillgate
{

namespace
{

/// For the morning, the afternoon, and the evening with the night.
using Illustrations = std::array<std::string_view, 3>;

struct CategoryIllustrations
{
    std::string_view category;
    Illustrations illustrations;
};

constexpr CategoryIllustrations categoryIllustrations[] = {
    {"gambling", {"ill-piggy-bank", "ill-board-game", "ill-family-dinner"}},
    {"social_media", {"ill-real-friends", "ill-coffee-chat", "ill-pet-walk"}},
    {"gaming", {"ill-cycling", "ill-swimming", "ill-nature"}},
    {"adult", {"ill-breathing", "ill-yoga", "ill-meditation"}},
    {"streaming", {"ill-painting", "ill-crafting", "ill-reading"}},
    {"shopping", {"ill-gardening", "ill-tea-ceremony", "ill-volunteering"}},
    {"news", {"ill-sunrise", "ill-reading", "ill-sunset-bench"}},
};

Illustrations illustrationsOf(MacBlockVariant variant)
{
    switch (variant) {
    case MacBlockVariant::app:
        return {"ill-nature", "ill-cycling", "ill-sunset-bench"};
    case MacBlockVariant::website:
        return {"ill-journaling", "ill-tea-ceremony", "ill-meditation"};
    case MacBlockVariant::sleep:
        return {"ill-sleeping", "ill-sleeping", "ill-sleeping"};
    case MacBlockVariant::family:
        return {"ill-family-dinner", "ill-family-dinner", "ill-family-dinner"};
    case MacBlockVariant::budget:
        return {"ill-stretching", "ill-cleaning", "ill-studying"};
    }
    return {};
}

std::size_t partOfDay(int hour)
{
    if (hour >= 6 && hour < 12)
        return 0;
    return hour >= 12 && hour < 18 ? 1 : 2;
}

} // namespace

std::string illustrationName(const BlockModal& modal, int hour)
{
    if (modal.illustrationOverride && !modal.illustrationOverride->empty())
        return *modal.illustrationOverride;
    for (const auto& [category, illustrations] : categoryIllustrations) {
        if (modal.category == category)
            return std::string{illustrations.at(partOfDay(hour))};
    }
    return std::string{illustrationsOf(modal.variant).at(partOfDay(hour))};
}

} // namespace stillgate
