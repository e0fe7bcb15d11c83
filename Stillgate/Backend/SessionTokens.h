#pragma once

#include "Backend/KeychainService.h"
#include "Backend/SecretBytes.h"

#include <optional>

namespace stillgate
{

/// The pair of opaque tokens that a session consists of: in memory while the program runs, in the token store
/// between runs.
class SessionTokens
{
public:
    explicit SessionTokens(KeychainService& store);

    /// The only way in for a new pair.
    void set(std::string_view access, std::string_view refresh);

    /// From the store; a token that isn't there leaves the one in memory as it is.
    void load();

    /// Wipes memory and store.
    void clear();

    /// Valid until the next change.
    [[nodiscard]] std::optional<std::string_view> access() const;
    [[nodiscard]] std::optional<std::string_view> refresh() const;

private:
    void zeroize();

    KeychainService& m_store;
    std::optional<SecretBytes> m_access;
    std::optional<SecretBytes> m_refresh;
};

} // namespace stillgate
