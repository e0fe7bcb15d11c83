#pragma once

#include "Platform/Log.h"
#include "Platform/SingleInstance.h"

#include <QObject>
#include <QVariantMap>

namespace stillgate
{

/// A name on the session bus, under which the running process takes what a second start has to say: the interface
/// org.freedesktop.Application of the Desktop Entry Specification.
///
/// THREAT: every process of the user can call it, or take the name first. So it decides nothing (InstanceLock does),
/// and takes from a caller no more than a short token.
class BusSingleInstance final : public QObject, public SingleInstance
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    explicit BusSingleInstance(Log& log);
    ~BusSingleInstance() override;

    void listen() override;
    [[nodiscard]] bool reopenOther() override;
    [[nodiscard]] std::unique_ptr<Observation> onReopen(std::function<void()> observer) override;

    // NOLINTBEGIN(readability-identifier-naming): the names are the interface's.
public Q_SLOTS:
    void Activate(const QVariantMap& platformData);
    // NOLINTEND(readability-identifier-naming)

private:
    Log& m_log;
    Observers<> m_reopen;
};

} // namespace stillgate
