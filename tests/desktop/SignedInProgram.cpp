#include "tests/desktop/SignedInProgram.h"

namespace stillgate::test
{

using nlohmann::json;

namespace
{

constexpr auto blockScreenTitle = "Stillgate";

/// As the program stores its tokens: against a casual look alone.
std::string scrambled(std::string token)
{
    for (char& byte : token)
        byte = static_cast<char>(byte ^ 0x5a);
    return token;
}

json appList(const std::vector<std::string>& apps)
{
    json list = json::array();
    for (const auto& app : apps)
        list.push_back({{"bundleId", app}, {"name", app}});
    return {{"macos", list}};
}

} // namespace

bool SignedInProgram::begin()
{
    const auto deployment = deploymentOfTheBuild();
    if (deployment.empty())
        return false;
    m_server.emplace(deployment);
    const auto devices = m_server->process().addDevices(2);
    m_device = devices[0];
    m_guardian = devices[1];
    home.environment.insert("STILLGATE_API_BASE_URL", QString::fromStdString(m_server->process().baseURL()));
    home.putSession();
    putFile(home.token("access"), scrambled(m_device.token));
    return true;
}

std::string SignedInProgram::curl(
    const SignedInDevice& device, const std::string& method, const std::string& path, const json& body)
{
    return "curl --silent --fail-with-body --request " + method + " --cacert '" +
        (m_server->process().folder() / "authority.pem").string() + "' --header 'Authorization: Bearer " +
        device.token + "' --header 'Content-Type: application/json' --data-binary '" + body.dump() + "' " +
        m_server->process().baseURL() + path;
}

json SignedInProgram::call(
    const SignedInDevice& device, const std::string& method, const std::string& path, const json& body)
{
    const auto answer = shell(curl(device, method, path, body) + " || echo refused");
    EXPECT_FALSE(answer.ends_with("refused\n")) << path << answer;
    return json::parse(answer, nullptr, false);
}

std::string SignedInProgram::linkGuardian()
{
    const auto code = call(m_device, "POST", "/sharing/generate").at("code");
    return call(m_guardian, "POST", "/sharing/link", {{"code", code}}).at("connection").at("id");
}

void SignedInProgram::limitDay(const std::string& connection, int minutes)
{
    call(m_guardian, "PUT", "/sharing/limit", {{"connectionId", connection}, {"dailyLimitMinutes", minutes}});
}

void SignedInProgram::reportUsage(int minutes)
{
    call(m_device, "POST", "/sharing/report-usage", {{"usedMinutes", minutes}});
}

void SignedInProgram::makePermanent(const std::string& connection)
{
    call(m_guardian, "PUT", "/guardian/connections/" + connection + "/settings", {{"flexibilityMode", "permanent"}});
}

void SignedInProgram::makeRule(const std::vector<std::string>& apps, const std::vector<std::string>& domains,
    const std::string& policy, const std::string& category)
{
    call(m_device, "POST", "/block-rules",
        {{"id", ""}, {"category", category}, {"customName", "Mine"}, {"enabled", true}, {"customDomains", domains},
            {"excludedDomains", json::array()}, {"customApps", appList(apps)}, {"unblockPolicy", policy}});
}

void SignedInProgram::makeGuardianRule(
    const std::string& connection, const std::vector<std::string>& apps, const std::vector<std::string>& domains)
{
    call(m_guardian, "POST", "/guardian/connections/" + connection + "/rules",
        {{"category", "custom"}, {"enabled", true}, {"customDomains", domains}, {"customApps", appList(apps)}});
}

void SignedInProgram::giveTask(const std::string& connection, const std::string& title, int minutes)
{
    call(m_guardian, "POST", "/guardian/connections/" + connection + "/tasks",
        {{"title", title}, {"rewardMinutes", minutes}, {"repeatType", "once"}, {"requiresProof", false}});
}

void SignedInProgram::judgeTask(const std::string& title, const std::string& judgement)
{
    call(m_guardian, "POST", "/tasks/" + ownTask(title).at("id").get<std::string>() + '/' + judgement);
}

json SignedInProgram::ownRules()
{
    return call(m_device, "GET", "/block-rules");
}

json SignedInProgram::ownTask(const std::string& title)
{
    for (auto& task : call(m_device, "GET", "/tasks?role=assignee")) {
        if (task.at("title") == title)
            return task;
    }
    return nullptr;
}

bool SignedInProgram::hasAccount()
{
    return !shell(curl(m_device, "GET", "/block-rules") + " >/dev/null || echo refused").contains("refused");
}

void SignedInProgram::cutNetwork()
{
    m_server->process().kill();
}

void SignedInProgram::restoreNetwork()
{
    m_server->process().restart(ServerProcess::Ports::same);
}

void SignedInProgram::start()
{
    m_program.reset();
    m_program.emplace(home);
    EXPECT_TRUE(m_program->says("[DNSProxy]")) << "the monitor starts once it is known how the proxy is";
}

QStringList chromiumOptions(const std::filesystem::path& profile, const QString& address)
{
    return {"--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run", "--disable-background-networking",
        "--disable-component-update", "--disable-sync", QString::fromStdString("--user-data-dir=" + profile.string()),
        address};
}

bool isBlockScreenUp()
{
    return !windowTitled(blockScreenTitle).empty();
}

bool blockScreenComes()
{
    return becomes(isBlockScreenUp);
}

bool blockScreenGoes()
{
    return becomes([] { return !isBlockScreenUp(); });
}

void press(const std::string& keys)
{
    shell("xdotool key " + keys);
}

std::string windowOf(const ApplicationProcess& app)
{
    return shell(
        "xdotool search --pid " + std::to_string(app.pid()) + " --class . 2>/dev/null | tail -n 1 | tr -d '\\n'");
}

bool isHidden(const std::string& window)
{
    return shell("xdotool search --onlyvisible --class . 2>/dev/null").find(window) == std::string::npos;
}

} // namespace stillgate::test
