#include "App/StateCache.h"
#include "DomainGenerator.h"
#include "Models/JSONCoding.h"
#include "Subjects.h"

#include <nlohmann/json.hpp>

namespace stillgate
{

namespace
{

constexpr auto what = "decode a cache of 2,000 rules";

void measureDecoding(benchmark::State& state, Report& report)
{
    const auto text = largeCache(2'000);
    bool decoded = true;
    const auto medians = mediansOfBoth(
        state,
        [&] {
            auto cached = JSONDecoder{DateForm::secondsSince2001}.decode<CachedState>(text);
            decoded &= cached.has_value();
            return cached;
        },
        [&] { return nlohmann::json::parse(text).size(); }); // the document ends within the time, as in decode()
    if (decoded)
        report.add(what, medians.ours, Yardstick{"nlohmann::json::parse alone", medians.peers});
    else
        report.fail(what, "the text doesn't decode");
}

} // namespace

void registerCacheBenchmarks(Report& report)
{
    const auto measure = [&report](benchmark::State& state) { measureDecoding(state, report); };
    benchmark::RegisterBenchmark(what, measure)->UseManualTime()->Iterations(51);
}

} // namespace stillgate
