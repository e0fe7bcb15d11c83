#include "Home.h"

namespace stillgate
{

std::string builtProgram(const std::string& name)
{
    return std::filesystem::read_symlink("/proc/self/exe").parent_path() / name;
}

Home::Home()
{
    test::putFile(config() / "com.stillgate.macos/defaults.json", R"({"sg_onboarding_complete": true})");
}

void Home::putSession() const
{
    test::putFile(data() / "secure/sg%5Faccess%5Ftoken", "token");
}

void Home::putCache(const std::string& text) const
{
    test::putFile(data() / "cache/state.dat", text);
}

ProgramCall Home::call(std::vector<std::string> arguments) const
{
    return {builtProgram("stillgate"), std::move(arguments),
        {
            {"HOME", m_folder.path().string()}, {"XDG_CONFIG_HOME", config().string()},
            {"XDG_DATA_HOME", data().parent_path().string()},
            {"STILLGATE_API_BASE_URL", "https://127.0.0.1:1/v1"}, // nobody listens there
        }};
}

} // namespace stillgate
