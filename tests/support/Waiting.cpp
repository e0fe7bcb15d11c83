#include "tests/support/Waiting.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QProcess>
#include <QThread>

namespace stillgate::test
{

bool becomes(const std::function<bool()>& condition)
{
    const QDeadlineTimer limit{std::chrono::seconds{20}};
    while (!condition()) {
        if (limit.hasExpired())
            return false;
        QCoreApplication::processEvents();
        QThread::msleep(5);
    }
    return true;
}

std::string shell(const std::string& command)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start("/bin/bash", {"-c", QString::fromStdString(command)});
    while (process.state() != QProcess::NotRunning) {
        if (!process.waitForFinished(5)) // it may serve what the command asks for
            QCoreApplication::processEvents();
    }
    return process.readAllStandardOutput().toStdString();
}

} // namespace stillgate::test
