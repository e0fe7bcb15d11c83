#pragma once

#include "Models/Result.h"
#include "Names/NameKey.h"

#include <memory>

namespace stillgate::dns
{

/// The names of one file, as their hashes, in the file's order and as often as it has them.
struct HashedNames
{
    std::vector<std::uint64_t> hashes;
    std::size_t skipped = 0; ///< entries that are no domain name, or a top-level one: nobody means half of the internet
};

/// Reads the text of a `blocked-config.json` part by part: an object whose key "domains" has a list of texts. What the
/// other keys have doesn't matter.
class BlockedConfigParser
{
public:
    /// More names than that are refused: what a user writes takes memory from all.
    static constexpr std::size_t mostNames = 2'000'000;

    /// `expectedBytes` is about how long the text will be.
    BlockedConfigParser(const NameKey& key, std::size_t expectedBytes);
    ~BlockedConfigParser();

    BlockedConfigParser(BlockedConfigParser&&) = delete;

    /// False once the text can't be the start of such a file.
    [[nodiscard]] bool read(std::string_view part);

    /// The names, once the whole text was read; or what is wrong with it.
    [[nodiscard]] Result<HashedNames> finish();

private:
    struct Machinery;
    std::unique_ptr<Machinery> m_machinery;
};

/// The largest file that is read, in bytes.
inline constexpr std::uint64_t largestConfig = 256ULL * 1024 * 1024;

/// Reads the open file to its end. It may be one that somebody is writing to: then it is a broken one, or a good one
/// with some of its names.
[[nodiscard]] Result<HashedNames> readBlockedConfig(int descriptor, std::uint64_t size, const NameKey& key);

} // namespace stillgate::dns
