#pragma once

#include "App/InstalledApp.h"
#include "Views/Common/RowsModel.h"

#include <QObject>
#include <qqmlregistration.h>

#include <set>
#include <string>

namespace stillgate
{

/// An app to be chosen.
struct AppRow
{
    Q_GADGET
    QML_VALUE_TYPE(appRow)
    Q_PROPERTY(QString id MEMBER id CONSTANT)
    Q_PROPERTY(QString name MEMBER name CONSTANT)
    Q_PROPERTY(QString icon MEMBER icon CONSTANT)
    Q_PROPERTY(bool isSelected MEMBER isSelected CONSTANT)

public:
    QString id; ///< its bundle identifier
    QString name;
    QString icon; ///< address of a picture; it may lead nowhere
    bool isSelected = false;

    bool operator==(const AppRow&) const = default;
};

/// Some of the apps of this machine, chosen from a list that can be searched.
class AppPickerModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to a sheet")

    Q_PROPERTY(QAbstractItemModel* apps READ apps CONSTANT)
    Q_PROPERTY(QString searchText READ searchText WRITE setSearchText NOTIFY changed)
    Q_PROPERTY(bool findsNothing READ findsNothing NOTIFY changed)
    Q_PROPERTY(QString selectionText READ selectionText NOTIFY changed)

public:
    explicit AppPickerModel(std::vector<InstalledApp> installedApps);

    [[nodiscard]] QAbstractItemModel* apps() { return &m_rows; }

    [[nodiscard]] const QString& searchText() const { return m_searchText; }

    void setSearchText(const QString& text);

    [[nodiscard]] bool findsNothing() const { return m_rows.rows().isEmpty(); }

    /// How many are chosen; empty for none.
    [[nodiscard]] QString selectionText() const;

    [[nodiscard]] const std::set<std::string>& selectedApps() const { return m_selectedApps; }

    /// The identifier itself where no app has it.
    [[nodiscard]] std::string nameOf(const std::string& bundleId) const;

    Q_INVOKABLE void toggle(const QString& bundleId);

Q_SIGNALS:
    void changed();

private:
    void update();

    std::vector<InstalledApp> m_installedApps;
    std::set<std::string> m_selectedApps;
    QString m_searchText;
    RowsModel<AppRow> m_rows;
};

} // namespace stillgate
