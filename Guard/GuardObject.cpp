#include "Guard/GuardObject.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>

namespace stillgate::guard
{

namespace
{

/// More than an application ever has, and few enough to keep in memory whatever they carry.
constexpr int mostCallsOfAUser = 16;

/// Several categories of sites, with every form of their names.
constexpr qsizetype mostTemporaryNames = 500'000;

QString errorName(Refusal::Kind kind)
{
    const QString prefix = "com.stillgate.Guard.Error.";
    switch (kind) {
    case Refusal::Kind::accessDenied:
        return prefix + "AccessDenied";
    case Refusal::Kind::invalidArgument:
        return prefix + "InvalidArgument";
    case Refusal::Kind::busy:
        return prefix + "Busy";
    case Refusal::Kind::failed:
        break;
    }
    return prefix + "Failed";
}

Permanence permanenceOf(bool isPermanent)
{
    return isPermanent ? Permanence::permanent : Permanence::flexible;
}

QVariantList arguments(const Answer<>& /*none*/)
{
    return {};
}

QVariantList arguments(const Answer<std::filesystem::path>& container)
{
    return {QString::fromStdString(container->string())};
}

QVariantList arguments(const Answer<ProtectionStatus>& status)
{
    return {status->isDNSProxyEnabled, QString::fromStdString(status->container.string()), status->isHostsBlockApplied};
}

} // namespace

GuardObject::GuardObject(Protection& protection)
    : m_protection(protection)
{}

void GuardObject::ReplaceHostsBlock(
    const QDBusUnixFileDescriptor& block, const QStringList& temporaryNames, bool permanent)
{
    const auto caller = admitCaller();
    if (!caller)
        return;
    auto text = SealedText::map(block.fileDescriptor());
    if (!text)
        return refuse(message(), text.error());
    if (temporaryNames.size() > mostTemporaryNames)
        return refuse(message(), {Refusal::Kind::invalidArgument, "these are more temporary names than fit"});
    std::vector<std::string> names;
    for (const auto& name : temporaryNames)
        names.push_back(name.toStdString());
    runDetached(answer(message(), caller->user,
        m_protection.replaceHostsBlock(*caller, std::move(*text), std::move(names), permanenceOf(permanent))));
}

void GuardObject::RemoveHostsBlock()
{
    if (const auto caller = admitCaller())
        runDetached(answer(message(), caller->user, m_protection.removeHostsBlock(*caller)));
}

QString GuardObject::EnableDNSProxy(bool permanent)
{
    if (const auto caller = admitCaller())
        runDetached(answer(message(), caller->user, m_protection.enableDNSProxy(*caller, permanenceOf(permanent))));
    return {};
}

void GuardObject::DisableDNSProxy()
{
    if (const auto caller = admitCaller())
        runDetached(answer(message(), caller->user, m_protection.disableDNSProxy(*caller)));
}

bool GuardObject::Status(QString& /*container*/, bool& /*hostsBlockApplied*/)
{
    if (const auto caller = admitCaller())
        runDetached(answer(message(), caller->user, m_protection.status(caller->user)));
    return false;
}

/// The caller of this call, unless it has left or has too many calls under way; the answer comes later.
std::optional<Caller> GuardObject::admitCaller()
{
    setDelayedReply(true);
    const auto busName = message().service();
    const QDBusReply<uint> user = connection().interface()->serviceUid(busName);
    if (!user.isValid())
        return std::nullopt;
    if (const auto calls = m_callsUnderWay.find(user.value());
        calls != m_callsUnderWay.end() && calls->second >= mostCallsOfAUser) {
        refuse(message(), {Refusal::Kind::busy, "too many calls of this user wait already"});
        return std::nullopt;
    }
    return Caller{user.value(), busName};
}

template <class T>
Task<> GuardObject::answer(QDBusMessage call, uid_t user, Task<Answer<T>> task)
{
    ++m_callsUnderWay[user];
    Q_EMIT callBegan();
    const auto answer = co_await task;
    if (answer)
        QDBusConnection::systemBus().send(call.createReply(arguments(answer)));
    else
        refuse(call, answer.error());
    if (--m_callsUnderWay[user] == 0)
        m_callsUnderWay.erase(user);
    if (isIdle())
        Q_EMIT becameIdle();
}

void GuardObject::refuse(const QDBusMessage& call, const Refusal& refusal)
{
    QDBusConnection::systemBus().send(
        call.createErrorReply(errorName(refusal.kind), QString::fromStdString(refusal.sentence)));
}

} // namespace stillgate::guard
