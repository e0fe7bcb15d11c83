#pragma once

#include "Platform/Linux/FileDescriptor.h"

#include <QSocketNotifier>

#include <functional>

namespace stillgate
{

/// Turns the first SIGTERM, SIGINT or SIGHUP into a call on the main thread (signalfd(2)). Later ones do nothing: the
/// end has begun.
///
/// The signals have to be held back before any other thread starts, which inherits that.
class TerminationSignals
{
public:
    /// From now on they wait for an object of this class.
    static void holdBack();

    explicit TerminationSignals(std::function<void()> onSignal);

private:
    void takeSignal();

    FileDescriptor m_signals;
    QSocketNotifier m_notifier;
    std::function<void()> m_onSignal;
};

} // namespace stillgate
