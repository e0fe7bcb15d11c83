#include "Guard/BusCalls.h"

#include <QCoroDBusPendingCall>
#include <QDBusConnection>
#include <QDBusPendingCall>

namespace stillgate::guard
{

Task<Result<QVariantList>> callOnBus(QDBusMessage call, std::chrono::milliseconds limit)
{
    const auto pending = QDBusConnection::systemBus().asyncCall(call, static_cast<int>(limit.count()));
    const auto reply = co_await pending;
    if (reply.type() != QDBusMessage::ReplyMessage) {
        const auto action = "call " + call.member() + ": " + reply.errorMessage();
        co_return failure(SystemFailure{action.toStdString()});
    }
    co_return reply.arguments();
}

} // namespace stillgate::guard
