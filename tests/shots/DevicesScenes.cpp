#include "tests/shots/Scene.h"
#include "tests/shots/Stage.h"

namespace stillgate::test
{

namespace
{

SGDevice named(const std::string& name, const std::string& platform, bool isActive)
{
    return {.id = name, .deviceName = name, .platform = platform, .isActive = isActive};
}

void every(Stage& stage)
{
    stage.state.devices = std::vector{
        named("Ada’s desk", "macos", true),
        named("Phone", "ios", true),
        named("The computer in the living room that everybody uses", "windows", false),
        named("Browser", "chrome", true),
        named("Refrigerator", "fridge", false),
    };
    stage.openTab(settingstab::devices);
}

} // namespace

std::vector<Scene> devicesScenes()
{
    return {
        {"devices", "none", [](Stage& stage) { stage.openTab(settingstab::devices); }},
        {"devices", "every", every},
    };
}

} // namespace stillgate::test
