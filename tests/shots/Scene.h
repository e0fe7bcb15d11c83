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

/// Those of every screen. A new file with some is named in Scene.cpp.
[[nodiscard]] std::vector<Scene> allScenes();

std::vector<Scene> blockScreenScenes();
std::vector<Scene> gateScenes();
std::vector<Scene> popoverScenes();
std::vector<Scene> protectionScenes();
std::vector<Scene> scheduleScenes();
std::vector<Scene> settingsScenes();
std::vector<Scene> taskScenes();

} // namespace stillgate::test
