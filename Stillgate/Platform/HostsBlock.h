#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace stillgate
{

inline constexpr std::string_view hostsPath = "/etc/hosts";

/// The block begins with the line that holds the first marker and ends with the next line that holds the second. The
/// line feed ahead of it (the empty line, or the end of a last line that had none) belongs to it too.
inline constexpr std::string_view hostsMarker = "# Stillgate Protected Sites";
inline constexpr std::string_view hostsMarkerEnd = "# End Stillgate";

/// `text` without its blocks, and otherwise to the byte as it was.
///
/// A block that doesn't end (no end marker before the next block or the end of the file) takes only what can't be
/// the user's: it ends before the first line that isn't exactly "127.0.0.1" and one name, in ascending order, or
/// whose name is localhost or this machine's, `hostName`.
[[nodiscard]] std::string withoutHostsBlocks(std::string_view text, std::string_view hostName);

/// The names of the blocks, in the order of the file. A block that doesn't end is told as above.
[[nodiscard]] std::vector<std::string> hostsBlockNames(std::string_view text, std::string_view hostName);

/// The names of the one block of the text, ascending, if every byte of it is as we write it; nothing if there is no
/// block, or more than one, or one that somebody has changed. The views live as long as the text.
[[nodiscard]] std::optional<std::vector<std::string_view>> intactHostsBlockNames(std::string_view text);

/// Whether a name stands for this machine itself: `hostName`, localhost, or a name below localhost (RFC 6761, section
/// 6.3). The guard leaves it out of every block. Names below the machine's own are others': it may be called "www".
/// `name` is in lower case.
[[nodiscard]] bool isNameOfMachine(std::string_view name, std::string_view hostName);

} // namespace stillgate
