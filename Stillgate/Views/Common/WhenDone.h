#pragma once

#include "Platform/Task.h"

#include <QObject>
#include <QPointer>

namespace stillgate
{

namespace detail
{

template <class T, class Then>
Task<> callBack(QPointer<QObject> receiver, Task<T> task, Then then)
{
    auto answer = co_await task;
    if (receiver)
        then(std::move(answer));
}

template <class Then>
Task<> callBack(QPointer<QObject> receiver, Task<> task, Then then)
{
    co_await task;
    if (receiver)
        then();
}

} // namespace detail

/// How a screen waits: calls back with what the task ends with, unless the receiver is gone by then. The task comes to
/// its end either way. It may have ended already: then the call comes at once.
template <class T, class Then>
void whenDone(QObject* receiver, Task<T> task, Then then)
{
    runDetached(detail::callBack(QPointer{receiver}, std::move(task), std::move(then)));
}

} // namespace stillgate
