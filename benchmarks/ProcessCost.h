#pragma once

#include "Measure.h"

#include <cstdint>
#include <sys/types.h>

namespace stillgate
{

/// What a process has used since its start.
struct ProcessUse
{
    Seconds processor{0};      ///< of all threads
    std::uint64_t wakeups = 0; ///< how often a thread has left the processor, by its own will or not: proc(5)
};

/// Of the threads that there are now. Throws std::runtime_error if there is no such process.
[[nodiscard]] ProcessUse useOf(pid_t process);

/// The memory that the process alone costs, in megabytes: its proportional set size, in which what only programs of Qt
/// map counts in full, as on a machine on which no other one runs. Otherwise this program's own pages would be in it.
[[nodiscard]] double memoryOf(pid_t process);

} // namespace stillgate
