#pragma once

#include <QDBusConnection>
#include <QDBusVirtualObject>
#include <QVariant>

#include <map>
#include <string>

namespace stillgate::test
{

/// What a panel is to a status item: the watcher that items register with, and whoever draws and clicks them
/// (org.kde.StatusNotifierWatcher, org.kde.StatusNotifierItem, com.canonical.dbusmenu). It has to be there before the
/// program starts, and answers while the event loop runs.
class StatusNotifierHost final : public QDBusVirtualObject
{
public:
    StatusNotifierHost();
    ~StatusNotifierHost() override;

    /// Whether an item has registered.
    [[nodiscard]] bool hasItem() const { return !m_service.isEmpty(); }

    /// A property of the item.
    [[nodiscard]] QVariant property(const QString& name) const;

    /// Whether it says how it looks, by a name or by pixels.
    [[nodiscard]] bool hasIcon() const;

    /// A click with the first button.
    void activate() const;

    /// The entries of its menu, and what each is called in clicks.
    [[nodiscard]] std::map<std::string, int> menu() const;

    /// A click on an entry. The program may end of it, and so no answer is waited for.
    void choose(const std::string& entry) const;

    [[nodiscard]] QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

private:
    [[nodiscard]] QDBusMessage call(
        const QString& path, const QString& interface, const QString& method, const QVariantList& arguments) const;
    [[nodiscard]] QString menuPath() const;

    QDBusConnection m_bus = QDBusConnection::sessionBus();
    QString m_service;
};

} // namespace stillgate::test
