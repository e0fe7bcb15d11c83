#include "Platform/Linux/FileDescriptor.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusUnixFileDescriptor>

#include <fcntl.h>
#include <iostream>
#include <iterator>
#include <limits>
#include <sys/mman.h>
#include <unistd.h>
#include <vector>

namespace
{

constexpr int allSeals = F_SEAL_WRITE | F_SEAL_SHRINK | F_SEAL_GROW;

QVariant memoryFile(const std::string& bytes, int seals)
{
    const stillgate::FileDescriptor file{::memfd_create("block", MFD_CLOEXEC | MFD_ALLOW_SEALING)};
    if (::write(file.number(), bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size()))
        std::abort();
    ::fcntl(file.number(), F_ADD_SEALS, seals);
    return QVariant::fromValue(QDBusUnixFileDescriptor{file.number()});
}

std::string allInput()
{
    return {std::istreambuf_iterator<char>{std::cin}, {}};
}

/// What a word of the command line stands for as an argument of a call: "-a,b" for a list.
QVariant argument(const QString& word)
{
    if (word == "permanent" || word == "flexible")
        return word == "permanent";
    if (word == "block")
        return memoryFile(allInput(), allSeals);
    if (word == "unsealed-block")
        return memoryFile(allInput(), F_SEAL_SHRINK | F_SEAL_GROW);
    if (word == "growing-block")
        return memoryFile(allInput(), F_SEAL_SHRINK | F_SEAL_WRITE);
    if (word.startsWith('-'))
        return word.mid(1).split(',', Qt::SkipEmptyParts);
    if (word == "pipe")
        return QVariant::fromValue(QDBusUnixFileDescriptor{STDIN_FILENO});
    return word;
}

void print(const QDBusMessage& reply)
{
    if (reply.type() != QDBusMessage::ReplyMessage) {
        std::cout << reply.errorName().section('.', -1).toStdString();
        std::cerr << reply.errorName().toStdString() << ": " << reply.errorMessage().toStdString() << '\n';
        return;
    }
    QStringList values{"done"};
    for (const auto& value : reply.arguments())
        values.append(value.toString());
    std::cout << values.join(' ').toStdString();
}

} // namespace

/// `stillgate-test-caller [--times N] METHOD [ARGUMENT...] [and|then METHOD...]`: calls the guard, each several times
/// at once, and prints its answers, or the names of its errors. "then" waits for the last answer before it goes on.
int main(int argc, char** argv)
{
    const QCoreApplication application{argc, argv};
    auto words = QCoreApplication::arguments().mid(1);
    int times = 1;
    if (words.value(0) == "--times") {
        times = words.value(1).toInt();
        words = words.mid(2);
    }
    std::vector<QDBusPendingCall> calls;
    while (!words.isEmpty()) {
        auto call = QDBusMessage::createMethodCall(
            "com.stillgate.Guard", "/com/stillgate/Guard", "com.stillgate.Guard1", words.takeFirst());
        while (!words.isEmpty() && words.front() != "and" && words.front() != "then")
            call << argument(words.takeFirst());
        for (int i = 0; i < times; ++i)
            calls.push_back(QDBusConnection::systemBus().asyncCall(call, std::numeric_limits<int>::max()));
        if (!words.isEmpty() && words.takeFirst() == "then")
            calls.back().waitForFinished();
    }
    for (auto& pending : calls) {
        pending.waitForFinished();
        print(pending.reply());
    }
    return EXIT_SUCCESS;
}
