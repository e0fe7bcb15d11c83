#pragma once

#include "Guard/Protection.h"

#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusUnixFileDescriptor>
#include <QObject>

namespace stillgate::guard
{

/// The object on the system bus: who calls, what the arguments are, and what is answered.
///
/// THREAT: every account of the machine can call it, with any bytes, as often as it likes.
class GuardObject final : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.stillgate.Guard1")

public:
    explicit GuardObject(Protection& protection);

    [[nodiscard]] bool isIdle() const { return m_callsUnderWay.empty(); }

Q_SIGNALS:
    void callBegan();
    void becameIdle();

    // NOLINTBEGIN(readability-identifier-naming): the names are the interface's.
public Q_SLOTS:
    /// `block`: a memory file sealed against every change, with a block as Guard/BlockNames.h reads it.
    /// `temporaryNames`: those of it that the user takes out again at will; `permanent` is about the others.
    void ReplaceHostsBlock(const QDBusUnixFileDescriptor& block, const QStringList& temporaryNames, bool permanent);
    void RemoveHostsBlock();

    /// The folder in which the user leaves what is to be blocked.
    QString EnableDNSProxy(bool permanent);
    void DisableDNSProxy();

    /// Whether the proxy runs with this user's part, that user's folder, and whether the user's names are in the file.
    bool Status(QString& container, bool& hostsBlockApplied);
    // NOLINTEND(readability-identifier-naming)

private:
    [[nodiscard]] std::optional<Caller> admitCaller();
    template <class T>
    Task<> answer(QDBusMessage call, uid_t user, Task<Answer<T>> task);
    void refuse(const QDBusMessage& call, const Refusal& refusal);

    Protection& m_protection;
    std::map<uid_t, int> m_callsUnderWay; ///< of each user that has any
};

} // namespace stillgate::guard
