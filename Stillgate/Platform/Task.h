#pragma once

#include <QCoroTask>

#include <coroutine>
#include <exception>
#include <utility>

namespace stillgate
{

/// An operation that may wait. It begins at once and runs on until it ends, whether or not it is awaited.
template <class T = void>
using Task = QCoro::Task<T>;

namespace detail
{

/// A coroutine that nobody awaits.
struct Detached
{
    struct promise_type
    {
        Detached get_return_object() { return {}; }

        std::suspend_never initial_suspend() noexcept { return {}; }

        std::suspend_never final_suspend() noexcept { return {}; }

        void return_void() {}

        void unhandled_exception() { std::terminate(); }
    };
};

template <class T>
Detached awaitAndDrop(Task<T> task)
{
    co_await task;
}

} // namespace detail

/// Lets a task run on by itself. What it ends with is dropped; an exception, which no task of ours lets out, ends
/// the program.
template <class T>
void runDetached(Task<T> task)
{
    detail::awaitAndDrop(std::move(task));
}

} // namespace stillgate
