#include "Operation/Deployment.h"

#include "Database/Database.h"
#include "Operation/Certificates.h"

#include <QFile>
#include <QHostAddress>
#include <QSaveFile>
#include <nlohmann/json.hpp>

#include <fstream>
#include <sstream>

namespace stillgate::server
{

namespace
{

namespace fs = std::filesystem;

enum class Readers { everybody, ownerAlone };

/// Whole or not at all, and on the disk when this returns.
void write(const fs::path& path, const std::string& text, Readers readers)
{
    QSaveFile file{QString::fromStdString(path.string())};
    const auto permissions = readers == Readers::ownerAlone
        ? QFile::ReadOwner | QFile::WriteOwner
        : QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::ReadOther;
    const bool isWritten = file.open(QFile::WriteOnly) && file.setPermissions(permissions) &&
        file.write(text.data(), static_cast<qint64>(text.size())) >= 0 && file.commit();
    if (!isWritten)
        throw std::runtime_error{"Can't write " + path.string() + ": " + file.errorString().toStdString()};
}

std::string read(const fs::path& path)
{
    std::ifstream file{path, std::ios::binary};
    std::ostringstream text;
    text << file.rdbuf();
    if (!file)
        throw std::runtime_error{"Can't read " + path.string()};
    return text.str();
}

std::string hostInAddress(const std::string& host)
{
    const bool isIPv6 = QHostAddress{QString::fromStdString(host)}.protocol() == QAbstractSocket::IPv6Protocol;
    return isIPv6 ? '[' + host + ']' : host;
}

std::string deploymentText(
    const DeploymentRequest& request, const std::vector<std::string>& pins, const std::string& trustAnchor)
{
    const auto& configuration = request.configuration;
    const auto origin = "https://" + hostInAddress(request.hosts.front()) + ':' + std::to_string(configuration.port);
    nlohmann::ordered_json values;
    values["baseURL"] = origin + "/v1";
    values["webSiteURL"] = configuration.hasLoopbackSite
        ? "http://127.0.0.1:" + std::to_string(configuration.loopbackSitePort)
        : configuration.webSite;
    values["pins"] = pins;
    values["trustAnchor"] = trustAnchor;
    return values.dump(4) + '\n';
}

} // namespace

std::vector<std::string> makeDeployment(const DeploymentRequest& request)
{
    const auto& folder = request.folder;
    if (!fs::create_directories(folder) && !fs::is_empty(folder))
        throw std::runtime_error{folder.string() + " isn't empty; it is left as it is"};

    // Whatever can be wrong with the request shows before anything is written.
    const auto authorityKey = ServerKey::generate();
    const auto key = ServerKey::generate();
    const auto spareKey = ServerKey::generate();
    const auto authority = authorityCertificate(authorityKey, "Stillgate authority");
    const auto certificate = serverCertificate(key, request.hosts, authority, authorityKey);
    const std::vector<std::string> pins{key.pin(), spareKey.pin()};
    auto configuration = request.configuration;
    configuration.certificate = "server.pem";
    configuration.key = "server.key";
    if (configuration.database.empty())
        configuration.database = "stillgate.db";
    Database{databaseIn(folder, configuration.database)}.migrate();

    write(folder / "authority.key", authorityKey.pem(), Readers::ownerAlone);
    write(folder / "authority.pem", authority, Readers::everybody);
    write(folder / "spare.key", spareKey.pem(), Readers::ownerAlone);
    write(folder / "server.key", key.pem(), Readers::ownerAlone);
    write(folder / "server.pem", certificate, Readers::everybody);
    write(folder / "server.toml", configurationText(configuration), Readers::ownerAlone);
    // The last file to come: with it the deployment is whole.
    write(folder / "deployment.json", deploymentText(request, pins, authority), Readers::everybody);
    return pins;
}

void renewCertificate(const fs::path& folder)
{
    const auto key = ServerKey::fromPEM(read(folder / "server.key"));
    const auto authorityKey = ServerKey::fromPEM(read(folder / "authority.key"));
    const auto hosts = hostsOf(read(folder / "server.pem"));
    write(folder / "server.pem", serverCertificate(key, hosts, read(folder / "authority.pem"), authorityKey),
        Readers::everybody);
}

} // namespace stillgate::server
