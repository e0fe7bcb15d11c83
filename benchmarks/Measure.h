#pragma once

#include <benchmark/benchmark.h>

#include <chrono>
#include <utility>
#include <vector>

namespace stillgate
{

using Seconds = std::chrono::duration<double>;

/// The time of one call. The end of what it returns doesn't count.
template <class Work>
Seconds timeOf(Work& work)
{
    const auto begin = std::chrono::steady_clock::now();
    auto result = work();
    benchmark::DoNotOptimize(result);
    return std::chrono::steady_clock::now() - begin;
}

/// `times` must not be empty.
[[nodiscard]] Seconds median(std::vector<Seconds> times);

/// The median over the iterations of a benchmark with manual time.
template <class Work>
Seconds medianOf(benchmark::State& state, Work work)
{
    std::vector<Seconds> times;
    for (auto _ : state) {
        times.push_back(timeOf(work));
        state.SetIterationTime(times.back().count());
    }
    return median(std::move(times));
}

struct Medians
{
    Seconds ours;
    Seconds peers;
};

/// As above, with a run of the peer after each run of ours: what slows the machine down for a while meets
/// both.
template <class Work, class Peer>
Medians mediansOfBoth(benchmark::State& state, Work work, Peer peer)
{
    std::vector<Seconds> peerTimes;
    std::vector<Seconds> times;
    for (auto _ : state) {
        times.push_back(timeOf(work));
        state.SetIterationTime(times.back().count());
        peerTimes.push_back(timeOf(peer));
    }
    return {median(std::move(times)), median(std::move(peerTimes))};
}

} // namespace stillgate
