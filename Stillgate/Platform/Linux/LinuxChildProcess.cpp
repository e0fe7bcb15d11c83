#include "Platform/Linux/LinuxChildProcess.h"

#include "Platform/OneShotEvent.h"

#include <QProcess>

#include <csignal>
#include <memory>
#include <unistd.h>

namespace stillgate
{

namespace
{

QStringList qtArguments(const std::vector<std::string>& arguments)
{
    QStringList list;
    for (const auto& argument : arguments)
        list.append(QString::fromStdString(argument));
    return list;
}

/// Runs in the child: a session of its own, and none of the signals held back that TerminationSignals holds back.
void standAlone()
{
    ::setsid();
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
}

/// The coroutine ends within the process's own signal: the sender has to outlive that.
struct DisconnectAndDeleteLater
{
    void operator()(QProcess* process) const
    {
        process->disconnect();
        process->deleteLater();
    }
};

} // namespace

Task<Result<int>> LinuxChildProcess::run(Command command)
{
    const std::unique_ptr<QProcess, DisconnectAndDeleteLater> process{new QProcess};
    OneShotEvent ended;
    QObject::connect(process.get(), &QProcess::finished, process.get(), [&ended] { ended.happen(); });
    QObject::connect(process.get(), &QProcess::errorOccurred, process.get(), [&ended](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart) // after every other error, finished() still comes
            ended.happen();
    });

    process->setStandardOutputFile(QProcess::nullDevice());
    process->setStandardErrorFile(QProcess::nullDevice());
    process->setChildProcessModifier(standAlone);
    process->start(QString::fromStdString(command.program), qtArguments(command.arguments));
    if (process->isOpen()) {
        process->write(command.standardInput.data(), static_cast<qint64>(command.standardInput.size()));
        process->closeWriteChannel();
    }
    co_await ended;

    if (process->error() == QProcess::FailedToStart)
        co_return failure(SystemFailure{"start " + command.program});
    if (process->exitStatus() == QProcess::CrashExit)
        co_return failure(SystemFailure{"run " + command.program + ": ended by a signal"});
    co_return process->exitCode();
}

} // namespace stillgate
