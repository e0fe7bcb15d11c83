#pragma once

#include "Guard/Refusal.h"

#include <string>
#include <string_view>
#include <vector>

namespace stillgate::guard
{

/// Host names, ascending by bytes and each once. The views live as long as the text that they were read from.
using BlockNames = std::vector<std::string_view>;

/// The names of a block as generateHostsEntries (Blocking/HostsEntries.h) makes it, to the byte: an empty line, the
/// start marker, lines of "127.0.0.1 " and a name, ascending, and the end marker.
///
/// THREAT: whoever calls may hand over any bytes. What this lets through is written into the hosts file, so every byte
/// is looked at.
[[nodiscard]] Answer<BlockNames> readBlock(std::string_view text);

/// Without those that are the machine's: localhost and all below it, and `hostName`. A rule of the user's may hold
/// them, and that must not cost the other names.
[[nodiscard]] BlockNames withoutNamesOfMachine(BlockNames names, std::string_view hostName);

/// The block that holds these names; nothing for no name.
[[nodiscard]] std::string blockText(const BlockNames& names);

/// The names of both.
[[nodiscard]] BlockNames unionOf(const BlockNames& a, const BlockNames& b);

/// Whether every name of `part` is one of `whole`.
[[nodiscard]] bool isSubset(const BlockNames& part, const BlockNames& whole);

/// A user's names.
struct UserNames
{
    BlockNames lasting;
    BlockNames temporary; ///< which go again, however permanent the others are; a name may be in both

    [[nodiscard]] BlockNames all() const { return unionOf(lasting, temporary); }
};

/// The names of a block, of which these, in any order, are temporary. Those that aren't of the block don't count.
[[nodiscard]] UserNames divided(const BlockNames& names, std::vector<std::string> temporaryNames);

} // namespace stillgate::guard
