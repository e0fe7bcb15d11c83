#include "Views/Account/AboutViewModel.h"

#include "Platform/WebAddress.h"
#include "Views/Common/TextOf.h"

namespace stillgate
{

namespace
{

/// What people call this version. The build has a number of its own, by which the backend asks for updates.
constexpr auto shownVersion = "1.0.0";

} // namespace

AboutViewModel::AboutViewModel(const Bundle& bundle, Workspace& workspace)
    : m_webSiteURL(bundle.infoValue("STILLGATE_WEB_SITE_URL").value_or(""))
    , m_workspace(workspace)
{}

QString AboutViewModel::versionText()
{
    return textOf("common.version") + ' ' + shownVersion;
}

QString AboutViewModel::webSite() const
{
    return QString::fromStdString(hostOfAddress(m_webSiteURL).value_or(""));
}

void AboutViewModel::openWebSite()
{
    if (!webSite().isEmpty())
        m_workspace.open(m_webSiteURL);
}

} // namespace stillgate
