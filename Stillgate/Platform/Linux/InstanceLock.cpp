#include "Platform/Linux/InstanceLock.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>

namespace stillgate
{

InstanceLock::InstanceLock(FileManager& files)
{
    const auto folder = files.applicationSupportDirectory() / "com.stillgate.macos";
    (void)files.createDirectory(folder);
    m_file = FileDescriptor{::open((folder / "lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600)};
    if (m_file.isOpen())
        m_isHeld = ::flock(m_file.number(), LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
}

} // namespace stillgate
