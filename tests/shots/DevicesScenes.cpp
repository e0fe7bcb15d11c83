#include "tests/shots/Scene.h"
#include "tests/shots/Stage.h"

namespace stillgate::test
{

namespace
{

constexpr int devicesTab = 8;

SGDevice device(const std::string& name, const std::string& platform, bool isActive)
{
    return {.id = name, .deviceName = name, .platform = platform, .isActive = isActive};
}

void none(Stage& stage)
{
    stage.signIn();
    stage.openSettings(devicesTab);
}

void every(Stage& stage)
{
    stage.signIn();
    stage.state.devices = std::vector{
        device("Ada’s desk", "macos", true),
        device("Phone", "ios", true),
        device("The computer in the living room that everybody uses", "windows", false),
        device("Browser", "chrome", true),
        device("Refrigerator", "fridge", false),
    };
    stage.openSettings(devicesTab);
}

constexpr Scene scenes[] = {
    {"devices", "none", none},
    {"devices", "every", every},
};

} // namespace

std::span<const Scene> devicesScenes()
{
    return scenes;
}

} // namespace stillgate::test
