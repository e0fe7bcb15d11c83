#pragma once

#include "Message/Records.h"

namespace stillgate::dns
{

/// Whether a message is an answer to this question; whose it is has to be known by other means.
[[nodiscard]] bool isAnswerTo(const Question& question, View message);

/// Whether an answer, which has a header, tells no more than that its sender can't or won't say. Another upstream may.
[[nodiscard]] bool saysNothing(View answer);

} // namespace stillgate::dns
