#pragma once

#include "Guard/Consent.h"
#include "Platform/OneShotEvent.h"

#include <QDBusServiceWatcher>
#include <QString>

#include <map>
#include <memory>
#include <string>
#include <sys/types.h>
#include <tuple>

namespace stillgate::guard
{

/// Who calls. The bus itself says so, no argument does.
struct Caller
{
    uid_t user = 0;
    QString busName; ///< unique, and never given to another connection
};

/// Asks polkit, which may ask a person.
class PolkitAuthority
{
public:
    PolkitAuthority();

    /// Whether the caller has this consent to the verb. Root needs none. Calls of one verb share one question while
    /// what they are about, of which this is the revision, is the same. It ends, unanswered, when the caller leaves the
    /// bus.
    [[nodiscard]] Task<bool> grants(Caller caller, std::string verb, Consent consent, std::uint64_t revision);

private:
    struct Question
    {
        QString id;
        bool isGranted = false;
        OneShotEvent answered;
    };

    /// Name on the bus, verb, what it needs, and revision.
    using Subject = std::tuple<QString, std::string, Consent, std::uint64_t>;

    Task<> ask(Subject subject, std::shared_ptr<Question> question);
    void forget(const QString& busName);

    std::map<Subject, std::shared_ptr<Question>> m_questions;
    quint64 m_lastId = 0;
    QDBusServiceWatcher m_callers;
};

} // namespace stillgate::guard
