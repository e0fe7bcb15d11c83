#pragma once

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

std::vector<Scene> accountScenes();
std::vector<Scene> blockScreenScenes();
std::vector<Scene> dashboardScenes();
std::vector<Scene> devicesScenes();
std::vector<Scene> gateScenes();
std::vector<Scene> groupScenes();
std::vector<Scene> popoverScenes();
std::vector<Scene> protectionScenes();
std::vector<Scene> screenTimeScenes();
std::vector<Scene> scheduleScenes();
std::vector<Scene> signInScenes();
std::vector<Scene> taskScenes();
std::vector<Scene> streakScenes();

} // namespace stillgate::test
