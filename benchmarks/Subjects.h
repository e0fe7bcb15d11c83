#pragma once

#include "Report.h"

namespace stillgate
{

// Each registers the benchmarks of one subject. They add their rows to the report, which has to outlive the
// run.

/// From rules to what is enforced.
void registerCompileBenchmarks(Report& report);

/// The text of the hosts file's block, beside sort(1) on as many names.
void registerHostsBenchmarks(Report& report);

/// Reading the cache, beside the JSON parser alone.
void registerCacheBenchmarks(Report& report);

/// The list of the apps that a rule can be about: what a sheet waits for before it is shown.
void registerAppScanBenchmarks(Report& report);

/// From the start of the program to the cached rules in the hosts file. Changes /etc/hosts: without the
/// private /etc of scripts/private-world, its row is skipped.
void registerStartBenchmarks(Report& report);

/// What the application costs while nothing happens, and how soon its first window shows something. Opens windows and
/// works with rules: without scripts/private-computer, its rows are skipped.
void registerDesktopBenchmarks(Report& report);

/// How long a user waits for the settings window, its tabs and its lists, and whether its memory stays level. Opens
/// windows: without scripts/private-desktop, its rows are skipped.
void registerSettingsBenchmarks(Report& report);

/// How soon the monitor knows that a site is blocked, and shows that an app is. Opens windows: without
/// scripts/private-computer, the second row is skipped.
void registerMonitorBenchmarks(Report& report);

/// The server under the heartbeats of 1,000 devices, beside what it can't do without: commits and handshakes.
void registerServerBenchmarks(Report& report);

} // namespace stillgate
