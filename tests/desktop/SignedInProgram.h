#pragma once

#include "tests/desktop/ApplicationProcess.h"
#include "tests/desktop/TrustedServer.h"

#include <nlohmann/json.hpp>

namespace stillgate::test
{

/// The program, signed in to a server of its own, and another account that can be the guardian. A test is given a part
/// of what the person has on their account; the program learns of it from the server alone.
class SignedInProgram
{
public:
    /// False where the program is built for a backend whose keys aren't here.
    [[nodiscard]] bool begin();

    /// The guardian's connection to the account.
    [[nodiscard]] std::string linkGuardian();
    void limitDay(const std::string& connection, int minutes);
    void reportUsage(int minutes);
    void makePermanent(const std::string& connection);

    void makeRule(const std::vector<std::string>& apps, const std::vector<std::string>& domains,
        const std::string& policy = "flexible", const std::string& category = "custom");
    void makeGuardianRule(
        const std::string& connection, const std::vector<std::string>& apps, const std::vector<std::string>& domains);

    void giveTask(const std::string& connection, const std::string& title, int minutes);

    /// The guardian's "approve" or "reject" of what the user has done.
    void judgeTask(const std::string& title, const std::string& judgement);

    // As the server has them.
    [[nodiscard]] nlohmann::json ownRules();
    [[nodiscard]] nlohmann::json ownTask(const std::string& title); ///< null if there is none
    [[nodiscard]] bool hasAccount();

    /// Starts the program, and waits until it watches.
    void start();

    /// From now on nobody answers the program.
    void cutNetwork();
    void restoreNetwork();

    [[nodiscard]] ApplicationProcess& program() { return *m_program; }

    ApplicationHome home;

private:
    [[nodiscard]] std::string curl(const SignedInDevice& device, const std::string& method, const std::string& path,
        const nlohmann::json& body = nlohmann::json::object());
    nlohmann::json call(const SignedInDevice& device, const std::string& method, const std::string& path,
        const nlohmann::json& body = nlohmann::json::object());

    std::optional<TrustedServer> m_server;
    SignedInDevice m_device;
    SignedInDevice m_guardian;
    std::optional<ApplicationProcess> m_program;
};

inline constexpr auto terminal = "com.apple.Terminal"; // of xterm, as rules name it
inline constexpr auto editor = "org.xfce.mousepad";

[[nodiscard]] QStringList chromiumOptions(const std::filesystem::path& profile, const QString& address);

[[nodiscard]] bool isBlockScreenUp();
[[nodiscard]] bool blockScreenComes();
[[nodiscard]] bool blockScreenGoes();

/// The keys that xdotool knows, as in "alt+F4".
void press(const std::string& keys);

/// The window of an app, also when it is put away.
[[nodiscard]] std::string windowOf(const ApplicationProcess& app);
[[nodiscard]] bool isHidden(const std::string& window);

} // namespace stillgate::test
