#pragma once

#include "Platform/Task.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <stdexcept>

namespace stillgate::test
{

/// A task on its way: with a manual clock, a test looks at it between two steps.
template <class T = void>
class Awaited
{
public:
    explicit Awaited(Task<T> task) { runDetached(settle(std::move(task), m_state)); }

    [[nodiscard]] bool hasEnded() const { return m_state->ended; }

    /// What the task ended with. Runs the event loop until then, for half a minute at most; then the test fails.
    T result()
    {
        const QDeadlineTimer limit{std::chrono::seconds{30}};
        while (!hasEnded() && !limit.hasExpired())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 50);
        if (!hasEnded())
            throw std::runtime_error{"the awaited task did not end"};
        if constexpr (!std::is_void_v<T>)
            return std::move(*m_state->value);
    }

private:
    struct State
    {
        bool ended = false;
        std::optional<std::conditional_t<std::is_void_v<T>, bool, T>> value;
    };

    static Task<> settle(Task<T> task, std::shared_ptr<State> state)
    {
        if constexpr (std::is_void_v<T>)
            co_await task;
        else
            state->value.emplace(co_await task);
        state->ended = true;
    }

    std::shared_ptr<State> m_state = std::make_shared<State>();
};

template <class T>
T await(Task<T> task)
{
    return Awaited<T>{std::move(task)}.result();
}

} // namespace stillgate::test
