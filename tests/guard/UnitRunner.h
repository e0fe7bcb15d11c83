#pragma once

#include "tests/guard/UnitFile.h"

#include <QDir>
#include <QProcess>
#include <QSocketNotifier>
#include <QTimer>

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <vector>

namespace stillgate::test
{

/// Runs units as systemd does, as far as ours go: sockets that it holds and that start their service at the first
/// datagram or connection, services that it starts again when they die, dependencies by Requires=, the user, the
/// capabilities and the state folder of a service.
///
/// Single-threaded and blocking where it starts something.
class UnitRunner
{
public:
    /// A program `/usr/bin/x` of a unit is `<root>/usr/bin/x` if that exists.
    UnitRunner(const QDir& unitFolder, const QDir& root);
    ~UnitRunner();

    UnitRunner(const UnitRunner&) = delete;
    UnitRunner& operator=(const UnitRunner&) = delete;

    /// Called when a service has ended by itself and isn't started again.
    std::function<void(const QString& unit)> onEnd = [](const QString&) {};

    /// Throw std::runtime_error for what can't be done.
    void start(const QString& unit);
    void stop(const QString& unit);

    void enable(const QString& unit) { m_enabled.insert(unit); }

    void disable(const QString& unit) { m_enabled.erase(unit); }

    /// From now on it can't be started.
    void mask(const QString& unit) { m_masked.insert(unit); }

    [[nodiscard]] bool isMasked(const QString& unit) const { return m_masked.contains(unit); }

    [[nodiscard]] bool isActive(const QString& unit) const;

    [[nodiscard]] bool isEnabled(const QString& unit) const { return m_enabled.contains(unit); }

private:
    struct Socket
    {
        std::vector<int> descriptors;
        std::vector<std::unique_ptr<QSocketNotifier>> notifiers;
    };

    void startSocket(const QString& unit);
    void startService(const QString& unit);
    void spawn(const QString& unit);
    void noteEnd(const QString& unit);
    void restart(const QString& unit);
    void noteUnnoticedEnd(const QString& unit);
    void listenAgain(const QString& service, bool isListening);
    [[nodiscard]] QStringList command(const QString& line) const;
    [[nodiscard]] QStringList sandbox(const UnitFile& file) const;
    void runToEnd(const UnitFile& file, const QString& key) const;

    QDir m_unitFolder;
    QDir m_root;
    std::map<QString, Socket> m_sockets;                     ///< that are held
    std::map<QString, std::unique_ptr<QProcess>> m_services; ///< that are to run
    std::map<QString, std::unique_ptr<QTimer>> m_restarts;   ///< of services that could not be started again
    std::set<QString> m_enabled;
    std::set<QString> m_masked;
};

} // namespace stillgate::test
