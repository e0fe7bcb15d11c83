#include "Platform/Linux/Desktop/AccessibleObject.h"

#include <QCoroDBusPendingCall>
#include <QDBusArgument>
#include <QDBusPendingCall>
#include <QDBusVariant>

namespace stillgate
{

namespace
{

constexpr auto accessible = "org.a11y.atspi.Accessible";
constexpr int longestAnswer = 1000; // ms
constexpr uint32_t embedsRelation = 13;

struct Reference
{
    QString service;
    QDBusObjectPath path;
};

Reference readReference(const QDBusArgument& argument)
{
    Reference reference;
    argument.beginStructure();
    argument >> reference.service >> reference.path;
    argument.endStructure();
    return reference;
}

std::vector<Reference> readReferences(const QDBusArgument& argument)
{
    std::vector<Reference> references;
    argument.beginArray();
    while (!argument.atEnd())
        references.push_back(readReference(argument));
    argument.endArray();
    return references;
}

std::vector<Reference> readEmbedded(const QDBusArgument& relations)
{
    std::vector<Reference> embedded;
    relations.beginArray();
    while (!relations.atEnd()) {
        uint32_t relation = 0;
        relations.beginStructure();
        relations >> relation;
        auto targets = readReferences(relations);
        relations.endStructure();
        if (relation == embedsRelation)
            embedded.insert(embedded.end(), targets.begin(), targets.end());
    }
    relations.endArray();
    return embedded;
}

/// Of an answer that has the form that was asked for.
QDBusArgument argumentOf(const QDBusMessage& answer)
{
    return answer.arguments().constFirst().value<QDBusArgument>();
}

bool isAnswer(const QDBusMessage& answer)
{
    return answer.type() == QDBusMessage::ReplyMessage;
}

} // namespace

AccessibleObject AccessibleObject::registry(const QDBusConnection& bus)
{
    return {bus, "org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root"};
}

AccessibleObject AccessibleObject::at(QString service, QString path) const
{
    return {m_bus, std::move(service), std::move(path)};
}

/// `form`: the signature of the answer; one of another is taken for an error.
Task<QDBusMessage> AccessibleObject::call(
    const char* interface, const char* method, const char* form, QVariantList arguments) const
{
    auto message = QDBusMessage::createMethodCall(m_service, m_path, interface, method);
    message.setArguments(arguments);
    const auto expected = QString::fromLatin1(form);
    const QDBusPendingCall pending = m_bus.asyncCall(message, longestAnswer);
    const QDBusMessage answer = co_await pending;
    if (answer.type() == QDBusMessage::ReplyMessage && answer.signature() != expected)
        co_return QDBusMessage{};
    co_return answer;
}

Task<std::vector<AccessibleObject>> AccessibleObject::children() const
{
    const auto self = *this;
    const auto answer = co_await self.call(accessible, "GetChildren", "a(so)");
    std::vector<AccessibleObject> children;
    if (isAnswer(answer)) {
        for (auto& [service, path] : readReferences(argumentOf(answer)))
            children.push_back(self.at(service, path.path()));
    }
    co_return children;
}

Task<std::vector<AccessibleObject>> AccessibleObject::embedded() const
{
    const auto self = *this;
    const auto answer = co_await self.call(accessible, "GetRelationSet", "a(ua(so))");
    std::vector<AccessibleObject> embedded;
    if (isAnswer(answer)) {
        for (auto& [service, path] : readEmbedded(argumentOf(answer)))
            embedded.push_back(self.at(service, path.path()));
    }
    co_return embedded;
}

Task<uint32_t> AccessibleObject::role() const
{
    const auto answer = co_await call(accessible, "GetRole", "u");
    co_return isAnswer(answer) ? answer.arguments().constFirst().toUInt() : 0;
}

Task<uint64_t> AccessibleObject::states() const
{
    const auto answer = co_await call(accessible, "GetState", "au");
    if (!isAnswer(answer))
        co_return uint64_t{0};
    const auto words = qdbus_cast<QList<uint32_t>>(answer.arguments().constFirst());
    co_return words.size() == 2 ? words[0] | static_cast<uint64_t>(words[1]) << 32U : uint64_t{0};
}

Task<std::string> AccessibleObject::name() const
{
    const auto answer = co_await call("org.freedesktop.DBus.Properties", "Get", "v", {accessible, "Name"});
    if (!isAnswer(answer))
        co_return std::string{};
    co_return answer.arguments().constFirst().value<QDBusVariant>().variant().toString().toStdString();
}

Task<std::string> AccessibleObject::text() const
{
    const auto answer = co_await call("org.a11y.atspi.Text", "GetText", "s", {0, -1});
    co_return isAnswer(answer) ? answer.arguments().constFirst().toString().toStdString() : std::string{};
}

Task<std::optional<ScreenRectangle>> AccessibleObject::extents() const
{
    constexpr uint32_t ofTheScreen = 0;
    const auto answer = co_await call("org.a11y.atspi.Component", "GetExtents", "(iiii)", {ofTheScreen});
    if (!isAnswer(answer))
        co_return std::nullopt;
    ScreenRectangle place;
    const auto argument = argumentOf(answer);
    argument.beginStructure();
    argument >> place.x >> place.y >> place.width >> place.height;
    argument.endStructure();
    co_return place;
}

Task<std::optional<std::string>> AccessibleObject::documentAddress() const
{
    const auto answer = co_await call("org.a11y.atspi.Document", "GetAttributes", "a{ss}");
    if (!isAnswer(answer))
        co_return std::nullopt;
    const auto attributes = qdbus_cast<QMap<QString, QString>>(answer.arguments().constFirst());
    for (const auto* name : {"DocURL", "URI"}) { // browsers of two families
        if (const auto address = attributes.value(name); !address.isEmpty())
            co_return address.toStdString();
    }
    co_return std::nullopt;
}

Task<uint32_t> AccessibleObject::process() const
{
    const auto bus = at("org.freedesktop.DBus", "/org/freedesktop/DBus");
    const auto answer = co_await bus.call("org.freedesktop.DBus", "GetConnectionUnixProcessID", "u", {m_service});
    co_return isAnswer(answer) ? answer.arguments().constFirst().toUInt() : 0;
}

} // namespace stillgate
