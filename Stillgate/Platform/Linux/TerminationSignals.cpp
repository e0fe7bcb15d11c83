#include "Platform/Linux/TerminationSignals.h"

#include <csignal>
#include <sys/signalfd.h>

namespace stillgate
{

namespace
{

sigset_t terminationSignals()
{
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGTERM, SIGINT, SIGHUP})
        sigaddset(&signals, signal);
    return signals;
}

FileDescriptor heldBackSignals()
{
    TerminationSignals::holdBack();
    const auto signals = terminationSignals();
    return FileDescriptor{::signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK)};
}

} // namespace

void TerminationSignals::holdBack()
{
    const auto signals = terminationSignals();
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

TerminationSignals::TerminationSignals(std::function<void()> onSignal)
    : m_signals(heldBackSignals())
    , m_notifier(m_signals.number(), QSocketNotifier::Read)
    , m_onSignal(std::move(onSignal))
{
    QObject::connect(&m_notifier, &QSocketNotifier::activated, &m_notifier, [this] { takeSignal(); });
}

void TerminationSignals::takeSignal()
{
    signalfd_siginfo ignored{};
    while (::read(m_signals.number(), &ignored, sizeof ignored) == sizeof ignored) {
    }
    m_notifier.setEnabled(false);
    m_onSignal();
}

} // namespace stillgate
