#include "tests/shots/Scene.h"

namespace stillgate::test
{

std::vector<Scene> allScenes()
{
    std::vector<Scene> all;
    for (const auto& scenes : {gateScenes(), popoverScenes(), blockScreenScenes(), settingsScenes(), protectionScenes(),
             scheduleScenes(), taskScenes()})
        all.insert(all.end(), scenes.begin(), scenes.end());
    return all;
}

} // namespace stillgate::test
