#include "Guard/PolkitAuthority.h"

#include "Guard/BusCalls.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusPendingCall>

namespace stillgate::guard
{

namespace
{

constexpr auto polkit = "org.freedesktop.PolicyKit1";

QDBusMessage polkitCall(const char* method)
{
    return QDBusMessage::createMethodCall(
        polkit, "/org/freedesktop/PolicyKit1/Authority", "org.freedesktop.PolicyKit1.Authority", method);
}

/// A polkit subject, (sa{sv}): the connection on the bus, whose process and session polkit looks up itself.
QVariant subjectOf(const QString& busName)
{
    QDBusArgument subject;
    subject.beginStructure();
    subject << QString{"system-bus-name"} << QVariantMap{{"name", busName}};
    subject.endStructure();
    return QVariant::fromValue(subject);
}

/// For the question's text in com.stillgate.guard.policy: in words of no language.
QVariant detailsOf(const std::string& verb)
{
    QDBusArgument details;
    details.beginMap(QMetaType::fromType<QString>(), QMetaType::fromType<QString>());
    details.beginMapEntry();
    details << QString{"what"} << QString{verb.ends_with("DNSProxy") ? "DNS" : "/etc/hosts"};
    details.endMapEntry();
    details.endMap();
    return QVariant::fromValue(details);
}

/// The first member of an AuthorizationResult, (bba{ss}).
bool isAuthorized(const QVariantList& reply)
{
    if (reply.size() != 1 || !reply.front().canConvert<QDBusArgument>())
        return false;
    const auto result = reply.front().value<QDBusArgument>();
    if (result.currentSignature() != "(bba{ss})")
        return false;
    bool is = false;
    result.beginStructure();
    result >> is;
    return is;
}

} // namespace

PolkitAuthority::PolkitAuthority()
{
    m_callers.setConnection(QDBusConnection::systemBus());
    m_callers.setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
    QObject::connect(&m_callers, &QDBusServiceWatcher::serviceUnregistered, &m_callers,
        [this](const QString& busName) { forget(busName); });
}

Task<bool> PolkitAuthority::grants(Caller caller, std::string verb, Consent consent, std::uint64_t revision)
{
    if (caller.user == 0)
        co_return true;
    const Subject subject{caller.busName, std::move(verb), consent, revision};
    auto question = m_questions[subject];
    if (!question) {
        question = m_questions[subject] = std::make_shared<Question>();
        question->id = "stillgate-guard-" + QString::number(++m_lastId);
        m_callers.addWatchedService(caller.busName);
        runDetached(ask(subject, question));
    }
    co_await question->answered;
    co_return question->isGranted;
}

Task<> PolkitAuthority::ask(Subject subject, std::shared_ptr<Question> question)
{
    constexpr uint mayAskAPerson = 1; // AllowUserInteraction
    const auto& [busName, verb, consent, revision] = subject;
    auto call = polkitCall("CheckAuthorization");
    call << subjectOf(busName) << QString{polkitAction(consent)} << detailsOf(verb) << mayAskAPerson << question->id;
    const auto reply = co_await callOnBus(call, noLimit);
    if (question->answered.hasHappened())
        co_return;
    question->isGranted = reply && isAuthorized(*reply);
    m_questions.erase(subject);
    question->answered.happen();
}

void PolkitAuthority::forget(const QString& busName)
{
    m_callers.removeWatchedService(busName);
    std::vector<std::shared_ptr<Question>> ended;
    std::erase_if(m_questions, [&](const auto& entry) {
        const bool isOfCaller = std::get<QString>(entry.first) == busName;
        if (isOfCaller)
            ended.push_back(entry.second);
        return isOfCaller;
    });
    for (const auto& question : ended) {
        auto cancel = polkitCall("CancelCheckAuthorization");
        cancel << question->id;
        QDBusConnection::systemBus().asyncCall(cancel);
        question->answered.happen();
    }
}

} // namespace stillgate::guard
