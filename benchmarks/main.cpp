#include "Subjects.h"

#include <QCoreApplication>
#include <benchmark/benchmark.h>

#include <exception>
#include <iostream>
#include <sysexits.h>

int main(int argc, char** argv)
{
    using namespace stillgate;

    const QCoreApplication application{argc, argv}; // the database drivers are plugins of it
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return EX_USAGE;
    benchmark::SetDefaultTimeUnit(benchmark::kMicrosecond);

    Report report;
    registerCompileBenchmarks(report);
    registerHostsBenchmarks(report);
    registerCacheBenchmarks(report);
    registerAppScanBenchmarks(report);
    registerMonitorBenchmarks(report);
    registerServerBenchmarks(report);
    registerStartBenchmarks(report);
    registerDesktopBenchmarks(report);
    registerSettingsBenchmarks(report);
    try {
        benchmark::RunSpecifiedBenchmarks();
    } catch (const std::exception& problem) {
        std::cerr << "Cannot measure: " << problem.what() << "\n";
        return EX_OSERR;
    }
    report.print(std::cout);
    return report.hasFailures() ? EX_SOFTWARE : EX_OK;
}
