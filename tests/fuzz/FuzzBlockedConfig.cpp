#include "FuzzTarget.h"
#include "Names/BlockedConfigFile.h"
#include "Require.h"

#include <algorithm>

namespace stillgate::dns
{

namespace
{

Result<HashedNames> parsed(std::string_view text, std::size_t partSize)
{
    BlockedConfigParser parser{NameKey{{}}, text.size()};
    for (bool goesOn = true; goesOn && !text.empty(); text.remove_prefix(std::min(partSize, text.size())))
        goesOn = parser.read(text.substr(0, partSize));
    return parser.finish();
}

} // namespace

} // namespace stillgate::dns

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace stillgate;

    const auto text = textOf(data, size);
    const auto whole = dns::parsed(text, size);
    for (const std::size_t partSize : {1, 3, 16}) {
        const auto inParts = dns::parsed(text, partSize);
        require(inParts.has_value() == whole.has_value(), "the parts that a file is read in decide nothing");
        if (whole)
            require(inParts->hashes == whole->hashes && inParts->skipped == whole->skipped,
                "the same names, in whatever parts");
    }
    if (whole)
        require((whole->hashes.size() + whole->skipped) * 2 <= size, "an entry has its quotation marks at least");
    return 0;
}
