#include "Upstream/UpstreamAnswers.h"

#include "Message/Header.h"

namespace stillgate::dns
{

bool isAnswerTo(const Question& question, View message)
{
    constexpr std::uint16_t kind = flag::response | flag::opcode;
    const auto answered = Question::of(message);
    return answered && answered->isSame(question) && (number16(message, Header::flags) & kind) == flag::response;
}

bool saysNothing(View answer)
{
    const auto code = static_cast<ResponseCode>(number16(answer, Header::flags) & flag::responseCode);
    return code == ResponseCode::serverFailure || code == ResponseCode::refused || code == ResponseCode::notImplemented;
}

} // namespace stillgate::dns
