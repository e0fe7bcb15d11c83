#pragma once

#include "Platform/Linux/FileDescriptor.h"

#include <QSocketNotifier>

#include <functional>

namespace stillgate
{

/// Turns SIGTERM, SIGINT and SIGHUP into a call on the main thread (signalfd(2)).
///
/// To be made before any other thread starts: threads inherit that the signals are held back.
class TerminationSignals
{
public:
    explicit TerminationSignals(std::function<void()> onSignal);

private:
    void takeSignal();

    FileDescriptor m_signals;
    QSocketNotifier m_notifier;
    std::function<void()> m_onSignal;
};

} // namespace stillgate
