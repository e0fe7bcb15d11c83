#pragma once

#include <span>
#include <string_view>
#include <vector>

namespace stillgate::test
{

class Stage;

/// A screen in one of its states.
struct Scene
{
    std::string_view screen;       ///< "sign-in"
    std::string_view state;        ///< "expired"
    void (*arrange)(Stage& stage); ///< sets up what the screen shows, and opens its window
};

/// Those of every screen. A new screen brings a file with its own, and is named in Scene.cpp.
[[nodiscard]] std::vector<Scene> allScenes();

std::span<const Scene> accountScenes();
std::span<const Scene> blockScreenScenes();
std::span<const Scene> dashboardScenes();
std::span<const Scene> devicesScenes();
std::span<const Scene> gateScenes();
std::span<const Scene> groupScenes();
std::span<const Scene> popoverScenes();
std::span<const Scene> protectionScenes();
std::span<const Scene> screenTimeScenes();
std::span<const Scene> scheduleScenes();
std::span<const Scene> signInScenes();
std::span<const Scene> taskScenes();
std::span<const Scene> streakScenes();

} // namespace stillgate::test
