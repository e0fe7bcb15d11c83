#include "Views/Gates/ForceUpdateViewModel.h"

#include "Localization/L.h"
#include "Views/Common/Follow.h"

namespace stillgate
{

namespace
{

constexpr auto noVersion = "0.0.0";

QString shown(const std::optional<std::string>& version)
{
    return "v" + QString::fromStdString(version.value_or(noVersion));
}

} // namespace

ForceUpdateViewModel::ForceUpdateViewModel(SessionData& session, const Bundle& bundle, Workspace& workspace)
    : m_session(session)
    , m_bundle(bundle)
    , m_workspace(workspace)
    , m_notifiers(follow([this] { Q_EMIT changed(); }, session.forceUpdateMessage, session.requiredVersion))
{}

QString ForceUpdateViewModel::message() const
{
    const auto& message = m_session.forceUpdateMessage.value();
    return QString::fromStdString(message ? *message : L.localized("extension.popup.updateMsg"));
}

QString ForceUpdateViewModel::currentVersion() const
{
    return shown(m_bundle.infoValue("CFBundleShortVersionString"));
}

QString ForceUpdateViewModel::minVersion() const
{
    return shown(m_session.requiredVersion.value());
}

QUrl ForceUpdateViewModel::illustration() const
{
    return QUrl::fromLocalFile(QString::fromStdString(m_bundle.path() / "Contents/Resources/ill-force-update.webp"));
}

void ForceUpdateViewModel::download()
{
    const auto url = QUrl{QString::fromStdString(m_session.forceUpdateUrl.value().value_or("")), QUrl::StrictMode};
    if (url.isValid())
        m_workspace.open(url.toEncoded().toStdString());
}

} // namespace stillgate
