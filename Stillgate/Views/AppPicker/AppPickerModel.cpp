#include "Views/AppPicker/AppPickerModel.h"

#include "Views/Common/TextOf.h"

#include <QUrl>

#include <algorithm>

namespace stillgate
{

namespace
{

QString addressOfIcon(const std::string& icon)
{
    if (icon.empty())
        return {};
    return "image://app-icon/" + QString::fromLatin1(QUrl::toPercentEncoding(QString::fromStdString(icon)));
}

} // namespace

AppPickerModel::AppPickerModel(std::vector<InstalledApp> installedApps)
    : m_installedApps(std::move(installedApps))
{
    update();
}

void AppPickerModel::setSearchText(const QString& text)
{
    if (text == m_searchText)
        return;
    m_searchText = text;
    update();
}

QString AppPickerModel::selectionText() const
{
    if (m_selectedApps.empty())
        return {};
    return counted(std::ssize(m_selectedApps), "common.selected");
}

std::string AppPickerModel::nameOf(const std::string& bundleId) const
{
    const auto app = std::ranges::find(m_installedApps, bundleId, &InstalledApp::bundleId);
    return app != m_installedApps.end() ? app->name : bundleId;
}

void AppPickerModel::toggle(const QString& bundleId)
{
    const auto id = bundleId.toStdString();
    if (m_selectedApps.erase(id) == 0)
        m_selectedApps.insert(id);
    update();
}

void AppPickerModel::update()
{
    QList<AppRow> rows;
    for (const auto& app : filteredApps(m_installedApps, m_searchText.toStdString()))
        rows.push_back({
            .id = QString::fromStdString(app.bundleId),
            .name = QString::fromStdString(app.name),
            .icon = addressOfIcon(app.icon),
            .isSelected = m_selectedApps.contains(app.bundleId),
        });
    m_rows.setRows(std::move(rows));
    Q_EMIT changed();
}

} // namespace stillgate
