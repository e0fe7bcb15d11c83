#include "tests/guard/UnitRunner.h"

#include <QHostAddress>

#include <csignal>
#include <fcntl.h>
#include <iostream>
#include <netinet/in.h>
#include <stdexcept>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace stillgate::test
{

namespace
{

constexpr int firstPassedDescriptor = 3; // SD_LISTEN_FDS_START

void require(bool holds, const QString& problem)
{
    if (!holds)
        throw std::runtime_error{problem.toStdString()};
}

/// "127.0.0.1:153" or "[::1]:153".
int boundSocket(const QString& address, int type)
{
    const auto colon = address.lastIndexOf(':');
    const QHostAddress host{address.left(colon).remove('[').remove(']')};
    const auto port = htons(address.mid(colon + 1).toUShort());
    sockaddr_storage storage{};
    socklen_t length = sizeof(sockaddr_in);
    if (host.protocol() == QAbstractSocket::IPv6Protocol) {
        auto& v6 = reinterpret_cast<sockaddr_in6&>(storage);
        const auto bytes = host.toIPv6Address();
        v6.sin6_family = AF_INET6;
        v6.sin6_port = port;
        std::copy_n(bytes.c, 16, v6.sin6_addr.s6_addr);
        length = sizeof(sockaddr_in6);
    } else {
        auto& v4 = reinterpret_cast<sockaddr_in&>(storage);
        v4.sin_family = AF_INET;
        v4.sin_port = port;
        v4.sin_addr.s_addr = htonl(host.toIPv4Address());
    }
    const int descriptor = ::socket(storage.ss_family, type | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    const int on = 1;
    ::setsockopt(descriptor, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    require(::bind(descriptor, reinterpret_cast<const sockaddr*>(&storage), length) == 0, "can't bind " + address);
    require(type != SOCK_STREAM || ::listen(descriptor, SOMAXCONN) == 0, "can't listen on " + address);
    return descriptor;
}

QString serviceOf(const QString& socket)
{
    return QString{socket}.replace(".socket", ".service");
}

QString socketOf(const QString& service)
{
    return QString{service}.replace(".service", ".socket");
}

/// In the child: a session of its own, so that all of a service's processes can be ended, no signal held back, and the
/// sockets where it looks for them.
void becomeService(const std::vector<int>& descriptors)
{
    ::setsid();
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    int target = firstPassedDescriptor;
    for (const int descriptor : descriptors)
        ::dup2(descriptor, target++);
}

} // namespace

UnitRunner::UnitRunner(const QDir& unitFolder, const QDir& root)
    : m_unitFolder(unitFolder)
    , m_root(root)
{}

UnitRunner::~UnitRunner()
{
    while (!m_services.empty()) {
        const auto unit = m_services.begin()->first; // a copy: the entry goes
        stop(unit);
    }
}

void UnitRunner::start(const QString& unit)
{
    noteUnnoticedEnd(unit);
    require(!isMasked(unit), unit + " is masked");
    if (isActive(unit))
        return;
    const UnitFile file{m_unitFolder.filePath(unit)};
    for (const auto& required : file.last("Requires").split(' ', Qt::SkipEmptyParts))
        start(required);
    if (unit.endsWith(".socket"))
        startSocket(unit);
    else
        startService(unit);
}

void UnitRunner::startSocket(const QString& unit)
{
    const UnitFile file{m_unitFolder.filePath(unit)};
    Socket socket;
    for (const auto& address : file.all("ListenDatagram"))
        socket.descriptors.push_back(boundSocket(address, SOCK_DGRAM));
    for (const auto& address : file.all("ListenStream"))
        socket.descriptors.push_back(boundSocket(address, SOCK_STREAM));
    for (const int descriptor : socket.descriptors) {
        auto& notifier =
            socket.notifiers.emplace_back(std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Read));
        QObject::connect(notifier.get(), &QSocketNotifier::activated, notifier.get(),
            [this, unit] { startService(serviceOf(unit)); });
    }
    m_sockets.insert_or_assign(unit, std::move(socket));
}

void UnitRunner::startService(const QString& unit)
{
    if (m_services.contains(unit))
        return;
    runToEnd(UnitFile{m_unitFolder.filePath(unit)}, "ExecStartPre");
    listenAgain(unit, false);
    spawn(unit);
}

void UnitRunner::spawn(const QString& unit)
{
    const UnitFile file{m_unitFolder.filePath(unit)};
    std::vector<int> descriptors;
    if (const auto socket = m_sockets.find(socketOf(unit)); socket != m_sockets.end()) {
        // Out of the way of the numbers that they get in the service.
        for (const int descriptor : socket->second.descriptors)
            descriptors.push_back(::fcntl(descriptor, F_DUPFD_CLOEXEC, 100));
    }
    auto process = std::make_unique<QProcess>();
    process->setProcessChannelMode(QProcess::ForwardedChannels);
    process->setChildProcessModifier([descriptors] { becomeService(descriptors); });
    // The shell keeps the process's number, of which the service makes sure that it is its own.
    const QString setUp = "export LISTEN_PID=$$ LISTEN_FDS=" + QString::number(descriptors.size()) + "; exec \"$@\"";
    process->start("/bin/bash",
        QStringList{"-c", descriptors.empty() ? "exec \"$@\"" : setUp, "unit"} + sandbox(file) +
            command(file.last("ExecStart")));
    const bool hasStarted = process->waitForStarted();
    for (const int descriptor : descriptors)
        ::close(descriptor);
    require(hasStarted, "can't start " + unit);
    QObject::connect(process.get(), &QProcess::finished, process.get(), [this, unit] { noteEnd(unit); });
    m_services.insert_or_assign(unit, std::move(process));
}

void UnitRunner::noteEnd(const QString& unit)
{
    const UnitFile file{m_unitFolder.filePath(unit)};
    // Within the process's own signal: it has to outlive that.
    m_services.at(unit).release()->deleteLater();
    m_services.erase(unit);
    runToEnd(file, "ExecStopPost");
    if (file.last("Restart") == "always") {
        restart(unit);
    } else {
        listenAgain(unit, true);
        onEnd(unit);
    }
}

/// Again and again, until what comes ahead of the service succeeds.
void UnitRunner::restart(const QString& unit)
{
    try {
        runToEnd(UnitFile{m_unitFolder.filePath(unit)}, "ExecStartPre");
        spawn(unit);
        if (const auto done = m_restarts.find(unit); done != m_restarts.end()) {
            done->second.release()->deleteLater(); // it may be calling
            m_restarts.erase(done);
        }
    } catch (const std::runtime_error& problem) {
        std::cerr << unit.toStdString() << ": " << problem.what() << '\n';
        auto& next = m_restarts[unit];
        if (!next) {
            next = std::make_unique<QTimer>();
            next->callOnTimeout([this, unit] { restart(unit); });
            next->setSingleShot(true);
        }
        next->start(100);
    }
}

/// The bus may know earlier than the event loop that a process has died.
void UnitRunner::noteUnnoticedEnd(const QString& unit)
{
    const auto service = m_services.find(unit);
    if (service == m_services.end())
        return;
    siginfo_t info{};
    ::waitid(P_PID, static_cast<id_t>(service->second->processId()), &info, WEXITED | WNOHANG | WNOWAIT);
    if (info.si_pid != 0)
        service->second->waitForFinished(-1);
}

void UnitRunner::stop(const QString& unit)
{
    if (const auto socket = m_sockets.find(unit); socket != m_sockets.end()) {
        for (const int descriptor : socket->second.descriptors)
            ::close(descriptor);
        m_sockets.erase(socket);
    }
    m_restarts.erase(unit);
    const auto service = m_services.find(unit);
    if (service == m_services.end())
        return;
    const auto process = std::move(service->second);
    m_services.erase(service);
    process->disconnect();
    const auto group = static_cast<pid_t>(process->processId());
    ::kill(-group, SIGTERM);
    process->waitForFinished(-1);
    ::kill(-group, SIGKILL);
    runToEnd(UnitFile{m_unitFolder.filePath(unit)}, "ExecStopPost");
    listenAgain(unit, true);
}

bool UnitRunner::isActive(const QString& unit) const
{
    return m_sockets.contains(unit) || m_services.contains(unit) || m_restarts.contains(unit);
}

void UnitRunner::listenAgain(const QString& service, bool isListening)
{
    const auto socket = m_sockets.find(socketOf(service));
    if (socket == m_sockets.end())
        return;
    for (const auto& notifier : socket->second.notifiers)
        notifier->setEnabled(isListening);
}

QStringList UnitRunner::command(const QString& line) const
{
    auto words = QProcess::splitCommand(line);
    const auto own = m_root.path() + words.value(0);
    if (QFile::exists(own))
        words[0] = own;
    return words;
}

/// What goes ahead of a service's command to run it as its unit says.
QStringList UnitRunner::sandbox(const UnitFile& file) const
{
    QStringList words{"env"};
    const auto user = file.last("User");
    if (const auto state = file.last("StateDirectory"); !state.isEmpty()) {
        const auto folder = "/var/lib/" + state;
        QDir{}.mkpath(folder);
        QFile::setPermissions(folder, QFile::Permissions(0x7055)); // 0755
        if (!user.isEmpty())
            QProcess::execute("chown", {user, folder});
        words.append("STATE_DIRECTORY=" + folder);
    }
    words += {"setpriv", "--no-new-privs"};
    QString bounds = "-all";
    for (const auto& capability : file.last("CapabilityBoundingSet").split(' ', Qt::SkipEmptyParts))
        bounds += ",+" + capability.mid(4).toLower();
    words += {"--bounding-set", bounds};
    if (!user.isEmpty())
        words += {"--reuid", user, "--regid", user, "--init-groups"};
    return words + QStringList{"--"};
}

void UnitRunner::runToEnd(const UnitFile& file, const QString& key) const
{
    for (const auto& line : file.all(key)) {
        auto words = sandbox(file) + command(line);
        QProcess process;
        process.setProcessChannelMode(QProcess::ForwardedChannels);
        process.setChildProcessModifier([] { becomeService({}); });
        process.start(words.takeFirst(), words);
        process.waitForFinished(-1);
        require(process.exitCode() == 0 || key != "ExecStartPre", line + " has failed");
    }
}

} // namespace stillgate::test
