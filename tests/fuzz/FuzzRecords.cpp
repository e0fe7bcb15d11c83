#include "FuzzTarget.h"
#include "RoundTrip.h"
#include "tests/support/AllRecords.h"

#include <array>

namespace stillgate
{

namespace
{

template <Record T>
void requireRoundTrips(std::string_view text)
{
    for (const auto dates : {DateForm::iso8601, DateForm::secondsSince2001}) {
        requireRoundTrip<T>(text, dates);
        requireRoundTrip<std::vector<T>>(text, dates);
    }
}

using Check = void (*)(std::string_view text);

template <Record... Types>
constexpr std::array<Check, sizeof...(Types)> checksOf(RecordList<Types...>)
{
    return {requireRoundTrips<Types>...};
}

/// One a record. The first byte of an input picks one, 'A' the first.
constexpr auto checks = checksOf(AllRecords{});

static_assert(checks.size() == STILLGATE_RECORDS_IN_MODELS, "every record of Stillgate/Models stands in the list");

} // namespace

} // namespace stillgate

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace stillgate;

    if (size == 0)
        return 0;
    const auto index = static_cast<std::uint8_t>(data[0] - 'A') % checks.size();
    checks[index](textOf(data, size).substr(1));
    return 0;
}
