#include "Backend/RequestPipeline.h"
#include "FuzzTarget.h"
#include "Platform/Memory/MemoryFileManager.h"
#include "Require.h"
#include "tests/support/AllRecords.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace stillgate
{

namespace
{

/// The answers of an input, one after the other; the last one for good.
class ScriptedServer final : public HTTPTransport
{
public:
    explicit ScriptedServer(std::vector<HTTPResponse> answers)
        : m_answers(std::move(answers))
    {}

    [[nodiscard]] Task<Result<HTTPResponse>> send(HTTPRequest request, CancellationToken) override
    {
        requests.push_back(std::move(request));
        const auto& answer = m_answers[std::min(requests.size(), m_answers.size()) - 1];
        if (answer.status == 0)
            co_return failure(APIError::transport("down"));
        co_return answer;
    }

    std::vector<HTTPRequest> requests;

private:
    std::vector<HTTPResponse> m_answers;
};

/// "STATUS CONTENT-TYPE", a line feed, and the body. Without a space there is no content type; without a number the
/// server isn't there.
HTTPResponse answerOf(std::string_view text)
{
    HTTPResponse answer;
    const auto line = text.substr(0, text.find('\n'));
    std::from_chars(line.data(), line.data() + std::min<std::size_t>(line.size(), 3), answer.status);
    if (const auto space = line.find(' '); space != std::string_view::npos)
        answer.contentType = line.substr(space + 1);
    answer.body = text.substr(std::min(line.size() + 1, text.size()));
    return answer;
}

/// Answers are parted by a line of three dashes.
std::vector<HTTPResponse> answersOf(std::string_view text)
{
    constexpr std::string_view parting = "\n---\n";
    std::vector<HTTPResponse> answers;
    for (auto end = text.find(parting); end != std::string_view::npos; end = text.find(parting)) {
        answers.push_back(answerOf(text.substr(0, end)));
        text.remove_prefix(end + parting.size());
    }
    answers.push_back(answerOf(text));
    return answers;
}

template <class T>
Task<> settle(Task<Result<T>> task, std::shared_ptr<std::optional<Result<T>>> result)
{
    result->emplace(co_await task);
}

bool isSuccess(const HTTPResponse& answer)
{
    return answer.status >= 200 && answer.status <= 299;
}

template <class T>
bool decodes(const HTTPResponse& answer)
{
    return JSONDecoder{DateForm::iso8601}.decode<T>(answer.body).has_value();
}

template <class T>
void requireHonestAnswer(std::string_view text)
{
    const auto answers = answersOf(text);
    ScriptedServer server{answers};
    MemoryFileManager files;
    KeychainService store{files};
    NotificationCenter notifications;
    int logouts = 0;
    const auto observation = notifications.observe(sgForceLogout, [&] { ++logouts; });
    RequestPipeline pipeline{"https://backend.test/v1", server, store, notifications};
    pipeline.tokens().set("old", "refresh");

    const auto settled = std::make_shared<std::optional<Result<T>>>();
    runDetached(settle(pipeline.request<T>({.method = "GET", .path = "/thing"}), settled));
    require(settled->has_value(), "a call ends when its answers are there");
    const auto& result = **settled;
    require(result || !result.error().description().empty(), "a failure can be told in words");

    const auto& first = answers.front();
    const bool isRepaired = server.requests.size() > 1;
    const bool hasSession = pipeline.tokens().access().has_value();
    require(server.requests.size() <= 3, "one refresh and one retry");
    require(!isRepaired || first.status == 401, "only a 401 is repaired");
    require(hasSession == (!isRepaired || result), "a session ends if and only if its repair fails");
    require(!isRepaired || result || result.error().is(APIError::unauthorized()), "and that is what is said");
    require(logouts == (isRepaired && server.requests.size() == 2 ? 1 : 0), "a failed refresh is told, once");
    if (!isRepaired && result)
        require(isSuccess(first) && decodes<T>(first), "what is no success is not taken for one");
    if (!isRepaired && isSuccess(first) && !first.contentType)
        require(result.has_value() == decodes<T>(first), "an answer that decodes is given");
}

using Check = void (*)(std::string_view text);

template <Record... Types>
constexpr std::array<Check, 2 * sizeof...(Types)> checksOf(RecordList<Types...>)
{
    return {requireHonestAnswer<Types>..., requireHonestAnswer<std::vector<Types>>...};
}

/// For each record, and for a list of each. The first byte of an input picks one, '0' the first.
constexpr auto checks = checksOf(AllRecords{});

} // namespace

} // namespace stillgate

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace stillgate;

    if (size == 0)
        return 0;
    checks[static_cast<std::uint8_t>(data[0] - '0') % checks.size()](textOf(data, size).substr(1));
    return 0;
}
