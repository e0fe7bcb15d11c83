#pragma once

#include "Models/Result.h"
#include "Platform/Task.h"

#include <QDBusMessage>

#include <chrono>
#include <limits>

namespace stillgate::guard
{

/// For an answer that a person has to give.
inline constexpr std::chrono::milliseconds noLimit{std::numeric_limits<int>::max()};

/// The answer to a call on the system bus, if it comes within the limit.
/// Errors: SystemFailure, with the words of the error reply.
[[nodiscard]] Task<Result<QVariantList>> callOnBus(QDBusMessage call, std::chrono::milliseconds limit);

} // namespace stillgate::guard
