#include "Views/Common/Illustrations.h"

#include <string_view>
#include <system_error>

namespace stillgate
{

namespace
{

bool isIllustrationName(std::string_view name)
{
    return !name.empty() && name.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789-") == std::string_view::npos;
}

} // namespace

QUrl illustrationAddress(const std::filesystem::path& bundle, const std::string& name)
{
    if (!isIllustrationName(name))
        return {};
    const auto file = bundle / "Contents/Resources" / (name + ".webp");
    std::error_code ignored;
    return std::filesystem::is_regular_file(file, ignored) ? QUrl::fromLocalFile(QString::fromStdString(file.string()))
                                                           : QUrl{};
}

} // namespace stillgate
