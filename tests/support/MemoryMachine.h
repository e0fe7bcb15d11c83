#pragma once

#include "Blocking/HostsFileService.h"
#include "Platform/Memory/ManualTime.h"
#include "Platform/Memory/MemoryFileManager.h"
#include "Platform/Memory/MemoryHost.h"
#include "Platform/Memory/MemoryHostsFileWriter.h"
#include "Platform/Memory/MemoryLog.h"
#include "Platform/Memory/MemoryUserDefaults.h"
#include "tests/support/Await.h"
#include "tests/support/FakeBackend.h"
#include "tests/support/Matchers.h"

namespace stillgate::test
{

/// A machine in memory at noon, and a backend.
class MemoryMachine : public testing::Test
{
protected:
    MemoryFileManager m_files;
    MemoryHostsFileWriter m_writer{m_files};
    MemoryUserDefaults m_defaults;
    MemoryHost m_host;
    MemoryLog m_log;
    ManualTime m_time;
    FakeBackend m_backend;
    HostsFileService m_hostsFile{m_writer, m_files, m_defaults, m_host, m_log};
};

} // namespace stillgate::test
