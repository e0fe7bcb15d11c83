#pragma once

#include "Localization/LocalizationManager.h"

namespace stillgate
{

/// The texts of this process, from everywhere: `L.localized("common.cancel")`. Read-only, and so from any thread.
class ProcessTexts
{
public:
    /// Once, before the first text is asked for and before there is a second thread. Until then a key is its own text.
    static void use(const LocalizationManager& manager);

    [[nodiscard]] std::string localized(
        std::string_view key, const LocalizationManager::Parameters& parameters = {}) const;

    /// The code of the language that the texts are in.
    [[nodiscard]] std::string locale() const;
};

inline constexpr ProcessTexts L; // NOLINT(readability-identifier-naming): a word of every screen

} // namespace stillgate
