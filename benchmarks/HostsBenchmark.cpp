#include "Blocking/HostsEntries.h"
#include "ChildProgram.h"
#include "DomainGenerator.h"
#include "Subjects.h"
#include "tests/support/TemporaryFolder.h"

#include <algorithm>
#include <fstream>
#include <random>

namespace stillgate
{

namespace
{

constexpr auto what = "hosts entries of 100,000 domains";

/// The names that the entries are made of, a line each, in no order.
void writeNames(const std::vector<std::string>& domains, const std::filesystem::path& file)
{
    const HostNames names{domains};
    auto lines = names.sorted();
    std::ranges::shuffle(lines, std::mt19937{7});
    std::ofstream stream{file};
    stream.exceptions(std::ios::badbit | std::ios::failbit);
    for (const auto line : lines)
        stream << line << "\n";
    stream.close();
}

void measureHostsEntries(benchmark::State& state, Report& report)
{
    const auto domains = DomainGenerator{}.take(100'000);
    const test::TemporaryFolder folder;
    const auto file = folder.path() / "names";
    writeNames(domains, file);

    const ProgramCall sort{"sort", {"-u", file.string()}, {{"LC_ALL", "C"}}};
    bool sorted = true;
    const auto medians = mediansOfBoth(
        state, [&] { return generateHostsEntries(domains); }, [&] { return sorted &= ChildProgram{sort}.wait() == 0; });
    if (sorted)
        report.add(what, medians.ours, Yardstick{"sort -u of the 700,000 names", medians.peers});
    else
        report.fail(what, "sort(1) failed");
}

} // namespace

void registerHostsBenchmarks(Report& report)
{
    const auto measure = [&report](benchmark::State& state) { measureHostsEntries(state, report); };
    benchmark::RegisterBenchmark(what, measure)->UseManualTime()->Iterations(15);
}

} // namespace stillgate
