#pragma once

#include "Platform/Bundle.h"
#include "Platform/Workspace.h"

#include <QObject>
#include <qqmlregistration.h>

namespace stillgate
{

/// What this application is.
class AboutViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made with its tab")

    Q_PROPERTY(QString versionText READ versionText CONSTANT)
    Q_PROPERTY(QString webSite READ webSite CONSTANT)

public:
    AboutViewModel(const Bundle& bundle, Workspace& workspace);

    [[nodiscard]] static QString versionText();

    /// Its domain; empty if this build has no web site.
    [[nodiscard]] QString webSite() const;

    Q_INVOKABLE void openWebSite();

private:
    std::string m_webSiteURL;
    Workspace& m_workspace;
};

} // namespace stillgate
