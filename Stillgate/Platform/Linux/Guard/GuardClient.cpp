#include "Platform/Linux/Guard/GuardClient.h"

#include "Platform/Linux/FileDescriptor.h"

#include <QCoroDBusPendingCall>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusPendingCall>
#include <QDBusReply>
#include <QDBusUnixFileDescriptor>

#include <cerrno>
#include <fcntl.h>
#include <limits>
#include <sys/mman.h>

namespace stillgate
{

namespace
{

constexpr auto service = "com.stillgate.Guard";

/// A file in memory that nobody can change any more: what the guard has looked at is what it writes.
Result<FileDescriptor> sealedFile(std::string_view text)
{
    FileDescriptor file{::memfd_create("stillgate-block", MFD_CLOEXEC | MFD_ALLOW_SEALING)};
    bool isDone = file.isOpen();
    while (isDone && !text.empty()) {
        const auto written = ::write(file.number(), text.data(), text.size());
        isDone = written > 0 || (written < 0 && errno == EINTR);
        text.remove_prefix(written > 0 ? static_cast<std::size_t>(written) : 0);
    }
    constexpr int seals = F_SEAL_WRITE | F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_SEAL;
    if (!isDone || ::fcntl(file.number(), F_ADD_SEALS, seals) != 0)
        return failure(SystemFailure{"make a sealed file", errno});
    return file;
}

} // namespace

bool GuardClient::isInstalled()
{
    const auto bus = QDBusConnection::systemBus();
    if (!bus.isConnected())
        return false;
    const QDBusReply<QStringList> names = bus.interface()->activatableServiceNames();
    return names.value().contains(service) || bus.interface()->isServiceRegistered(service).value();
}

Task<Result<GuardClient::Status>> GuardClient::status()
{
    const auto answer = co_await call("Status");
    if (!answer)
        co_return std::unexpected{answer.error()};
    if (answer->size() != 3)
        co_return failure(SystemFailure{"ask the guard: an answer that makes no sense"});
    co_return Status{.isDNSProxyEnabled = answer->at(0).toBool(), .hasContainer = !answer->at(1).toString().isEmpty()};
}

Task<Result<void>> GuardClient::replaceHostsBlock(
    std::string block, std::vector<std::string> temporaryNames, Permanence permanence)
{
    const auto file = sealedFile(block);
    if (!file)
        co_return std::unexpected{file.error()};
    const auto argument = QVariant::fromValue(QDBusUnixFileDescriptor{file->number()}); // a copy of the descriptor
    QStringList temporary;
    for (const auto& name : temporaryNames)
        temporary.append(QString::fromStdString(name));
    co_return co_await order("ReplaceHostsBlock", {argument, temporary, permanence == Permanence::permanent});
}

Task<Result<void>> GuardClient::removeHostsBlock()
{
    return order("RemoveHostsBlock");
}

Task<Result<void>> GuardClient::enableDNSProxy(Permanence permanence)
{
    return order("EnableDNSProxy", {permanence == Permanence::permanent});
}

Task<Result<void>> GuardClient::disableDNSProxy()
{
    return order("DisableDNSProxy");
}

Task<Result<void>> GuardClient::order(QString method, QVariantList arguments)
{
    const auto answer = co_await call(method, arguments);
    co_return answer ? Result<void>{} : std::unexpected{answer.error()};
}

Task<Result<QVariantList>> GuardClient::call(QString method, QVariantList arguments)
{
    auto message = QDBusMessage::createMethodCall(service, "/com/stillgate/Guard", "com.stillgate.Guard1", method);
    message.setArguments(arguments);
    message.setInteractiveAuthorizationAllowed(true);
    constexpr int noLimit = std::numeric_limits<int>::max();
    const QDBusPendingCall pending = QDBusConnection::systemBus().asyncCall(message, noLimit);
    const QDBusMessage reply = co_await pending;
    if (reply.type() != QDBusMessage::ReplyMessage)
        co_return failure(SystemFailure{"ask the guard: " + reply.errorMessage().toStdString()});
    co_return reply.arguments();
}

} // namespace stillgate
