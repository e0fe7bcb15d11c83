#pragma once

#include "Platform/FileManager.h"
#include "Platform/Linux/FileDescriptor.h"

namespace stillgate
{

/// Keeps two engines of one user from working on the same files, and from using a refresh token twice. The kernel takes
/// the lock back when the process ends, however it does (flock(2)).
class InstanceLock
{
public:
    /// Tries once. Where no lock can be made, nobody else has one either.
    explicit InstanceLock(FileManager& files);

    /// False: another process has it.
    [[nodiscard]] bool isHeld() const { return m_isHeld; }

private:
    FileDescriptor m_file{-1};
    bool m_isHeld = true;
};

} // namespace stillgate
