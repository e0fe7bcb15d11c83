#pragma once

#include "Blocking/AppMonitor.h"
#include "Platform/Clock.h"
#include "Platform/Host.h"
#include "Views/AppPicker/AppPickerModel.h"

#include <QObject>
#include <QStringList>
#include <qqmlregistration.h>

namespace stillgate
{

/// The sheet that sets up a quick block: for how long, and of what.
class QuickBlockViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the protection tab")

    Q_PROPERTY(QList<QString> durations READ durations CONSTANT)
    Q_PROPERTY(int selectedDuration READ selectedDuration WRITE selectDuration NOTIFY changed)
    Q_PROPERTY(int selectedTab READ selectedTab WRITE selectTab NOTIFY changed)
    Q_PROPERTY(bool showsApps READ showsApps NOTIFY changed)
    Q_PROPERTY(stillgate::AppPickerModel* picker READ picker CONSTANT)
    Q_PROPERTY(QString domainInput READ domainInput WRITE setDomainInput NOTIFY changed)
    Q_PROPERTY(bool canStart READ canStart NOTIFY changed)

public:
    QuickBlockViewModel(
        AppMonitor& monitor, const Clock& clock, const Host& host, std::vector<InstalledApp> installedApps);

    [[nodiscard]] static QStringList durations();

    [[nodiscard]] int selectedDuration() const { return m_selectedDuration; }

    void selectDuration(int index);

    /// 0: apps, 1: websites.
    [[nodiscard]] int selectedTab() const { return m_selectedTab; }

    void selectTab(int index);

    [[nodiscard]] bool showsApps() const { return m_selectedTab == 0; }

    [[nodiscard]] AppPickerModel* picker() { return &m_picker; }

    [[nodiscard]] const QString& domainInput() const { return m_domainInput; }

    void setDomainInput(const QString& text);

    /// Something of what is in view has been chosen.
    [[nodiscard]] bool canStart() const;

    Q_INVOKABLE void start();

Q_SIGNALS:
    void changed();
    void started();

private:
    [[nodiscard]] std::set<std::string> parsedDomains() const;
    [[nodiscard]] std::int64_t minutes() const;

    AppMonitor& m_monitor;
    const Clock& m_clock;
    const Host& m_host;
    AppPickerModel m_picker;
    int m_selectedDuration = 1; ///< 30 minutes
    int m_selectedTab = 0;
    QString m_domainInput;
};

} // namespace stillgate
