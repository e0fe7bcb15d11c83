#include "tests/support/FakeBackend.h"

namespace stillgate::test
{

template <class T>
Task<Result<T>> FakeBackend::answer(std::string call, const Result<T>* result, CancellationToken token)
{
    calls.push_back(call);
    if (const auto held = m_held.find(call); held != m_held.end() && !token.isCancelled()) {
        const auto released = held->second;
        const auto onCancel = isSlowToCancel ? nullptr : token.onCancel([released] { released->happen(); });
        co_await *released;
    }
    if (token.isCancelled()) {
        calls.push_back("cancelled " + call);
        co_return failure(APIError::transport("cancelled"));
    }
    co_return *result;
}

void FakeBackend::loadTokens()
{
    calls.emplace_back("loadTokens");
    authenticated = hasStoredTokens;
}

} // namespace stillgate::test
