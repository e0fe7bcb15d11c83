#pragma once

#include <QUrl>

#include <filesystem>
#include <string>

namespace stillgate
{

/// The picture of this name in the bundle, such as "ill-nature"; empty if there is none.
///
/// THREAT: a name may come from the network. It is a name, never a path.
[[nodiscard]] QUrl illustrationAddress(const std::filesystem::path& bundle, const std::string& name);

} // namespace stillgate
