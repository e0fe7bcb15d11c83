#pragma once

#include "Platform/Observers.h"

#include <memory>
#include <utility>

namespace stillgate
{

/// What an operation looks at to learn that its result is no longer wanted. One made without a source is never
/// cancelled.
class CancellationToken
{
public:
    CancellationToken() = default;

    [[nodiscard]] bool isCancelled() const { return m_state && m_state->isCancelled; }

    /// Calls back on a later cancellation, while the registration lives.
    [[nodiscard]] std::unique_ptr<Observation> onCancel(Observers<>::Observer action) const
    {
        return m_state ? m_state->observers.add(std::move(action)) : nullptr;
    }

private:
    friend class CancellationSource;

    struct State
    {
        bool isCancelled = false;
        Observers<> observers;
    };

    explicit CancellationToken(std::shared_ptr<State> state)
        : m_state(std::move(state))
    {}

    std::shared_ptr<State> m_state;
};

/// Cancels the operations that were given its token. Copies cancel the same ones. Main thread only.
class CancellationSource
{
public:
    [[nodiscard]] CancellationToken token() const { return CancellationToken{m_state}; }

    /// The second and later calls do nothing.
    void cancel() const
    {
        if (!std::exchange(m_state->isCancelled, true))
            m_state->observers.notify();
    }

private:
    std::shared_ptr<CancellationToken::State> m_state = std::make_shared<CancellationToken::State>();
};

} // namespace stillgate
