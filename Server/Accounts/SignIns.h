#pragma once

#include "Database/Database.h"
#include "Models/Account.h"
#include "Models/Session.h"

#include <optional>
#include <string>

namespace stillgate::server
{

/// Whom a request comes from.
struct Account
{
    std::string userId;
    std::string timeZone;
    std::string language;
    std::string signInId;
    std::string deviceId;

    STILLGATE_RECORD(Account, userId, timeZone, language, signInId, deviceId);
};

/// The sign-ins of devices: access tokens for 24 hours, and refresh tokens that buy a new pair once.
///
/// THREAT: a stolen refresh token is used by the thief and by its owner, and the second of the two gives the theft
/// away: all tokens of the sign-in end. Only the pair that was given last may be asked for again for 60 seconds, since
/// an answer can get lost; it is worked out anew from the token itself, so that no token is ever stored.
class SignIns
{
public:
    explicit SignIns(Database& database)
        : m_database(database)
    {}

    /// Lets a device in: makes it, and gives its first pair.
    TokenRefreshResponse begin(const std::string& userId, Date now);

    [[nodiscard]] std::optional<Account> accountOf(const std::string& accessToken, Date now);

    enum class Refusal {
        unknown, ///< or expired
        reused,  ///< the sign-in has been ended
    };

    std::expected<TokenRefreshResponse, Refusal> refresh(const std::string& refreshToken, Date now);

    static constexpr std::chrono::hours accessLifetime{24};
    static constexpr std::chrono::days refreshLifetime{180};
    static constexpr std::chrono::seconds repetitionPeriod{60};

private:
    void store(const std::string& signInId, const TokenRefreshResponse& pair, Date now);
    [[nodiscard]] bool wasRotated(const std::string& digest);

    Database& m_database;
};

} // namespace stillgate::server
