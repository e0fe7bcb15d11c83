#pragma once

#include "Guard/SystemUnits.h"
#include "Platform/OneShotEvent.h"

#include <QDBusMessage>
#include <QObject>

#include <map>
#include <memory>

namespace stillgate::guard
{

/// systemd, over the system bus (org.freedesktop.systemd1(5)).
class SystemdUnits final : public QObject, public SystemUnits
{
    Q_OBJECT

public:
    SystemdUnits();

    [[nodiscard]] Task<Result<void>> enableAndStart(std::vector<std::string> units) override;
    [[nodiscard]] Task<Result<void>> stopAndDisable(std::vector<std::string> units) override;
    [[nodiscard]] Task<Result<void>> mask(std::vector<std::string> units) override;
    [[nodiscard]] Task<bool> isActive(std::string unit) override;

private Q_SLOTS: // by name: a slot with an object path among its arguments isn't found
    void noteRemovedJob(const QDBusMessage& signal);

private:
    /// A job of systemd's, from when its result or its path is known, whichever comes first.
    struct Job
    {
        OneShotEvent ended;
        QString result = "it hasn't ended in time";
    };

    Task<Result<void>> runJob(const char* method, std::string unit);
    std::shared_ptr<Job> job(const QString& path);

    int m_callsUnderWay = 0; ///< whose jobs are of interest: every other job of the system is reported too
    std::map<QString, std::shared_ptr<Job>> m_jobs;
};

} // namespace stillgate::guard
