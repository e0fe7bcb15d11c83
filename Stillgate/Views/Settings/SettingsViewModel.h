#pragma once

#include "App/SessionData.h"
#include "App/Shortcuts.h"
#include "Platform/NotificationCenter.h"
#include "Views/Settings/TabScreen.h"

#include <QList>
#include <QObject>
#include <qqmlregistration.h>

#include <vector>

namespace stillgate
{

/// A line of the sidebar: a tab, or the title of those below it, which has no icon.
struct SidebarItem
{
    Q_GADGET
    QML_VALUE_TYPE(sidebarItem)
    Q_PROPERTY(int tag MEMBER tag CONSTANT)
    Q_PROPERTY(QString icon MEMBER icon CONSTANT)
    Q_PROPERTY(QString label MEMBER label CONSTANT)

public:
    int tag = 0;
    QString icon;
    QString label;
};

/// The settings window: which tab is chosen, with its screen, and who is signed in. The screen of a tab is made when
/// the tab is chosen, and goes when another is.
class SettingsViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made with its window")

    Q_PROPERTY(QList<stillgate::SidebarItem> sidebarItems READ sidebarItems CONSTANT)
    Q_PROPERTY(int selectedTab READ selectedTab NOTIFY selectedTabChanged)
    Q_PROPERTY(QUrl tabSource READ tabSource NOTIFY selectedTabChanged)
    Q_PROPERTY(QObject* tabViewModel READ tabViewModel NOTIFY selectedTabChanged)
    Q_PROPERTY(QString userName READ userName NOTIFY userChanged)
    Q_PROPERTY(QString userInitial READ userInitial NOTIFY userChanged)

public:
    SettingsViewModel(SessionData& session, NotificationCenter& notifications, TabFactory makeTab);
    ~SettingsViewModel() override;

    [[nodiscard]] static QList<SidebarItem> sidebarItems();

    [[nodiscard]] int selectedTab() const { return m_selectedTab; }

    [[nodiscard]] const QUrl& tabSource() const { return m_tab.source; }

    [[nodiscard]] QObject* tabViewModel() const { return m_tab.viewModel.get(); }

    /// Their address if they gave no name; empty while nobody is signed in.
    [[nodiscard]] QString userName() const;
    [[nodiscard]] QString userInitial() const;

    /// A tag that no tab has changes nothing.
    Q_INVOKABLE void select(int tag);

    /// The tab that is so many places further down; the ends stop it.
    Q_INVOKABLE void move(int places);

Q_SIGNALS:
    void selectedTabChanged();
    void userChanged();

private:
    void showTab();

    SessionData& m_session;
    TabFactory m_makeTab;
    int m_selectedTab = settingstab::dashboard;
    TabScreen m_tab;
    QPropertyNotifier m_userNotifier;
    QPropertyNotifier m_sessionNotifier;
    std::unique_ptr<Observation> m_navigation;
};

} // namespace stillgate
