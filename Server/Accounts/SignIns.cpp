#include "Accounts/SignIns.h"

#include "Accounts/Secrets.h"

namespace stillgate::server
{

namespace
{

struct StoredRefreshToken
{
    std::string signInId;
    std::optional<Date> rotatedAt;
    std::optional<std::string> rotationSalt;

    STILLGATE_RECORD(StoredRefreshToken, signInId, rotatedAt, rotationSalt);
};

TokenRefreshResponse successorsOf(const std::string& refreshToken, const std::string& salt)
{
    return {.accessToken = derivedToken(refreshToken, salt, "access"),
        .refreshToken = derivedToken(refreshToken, salt, "refresh")};
}

} // namespace

TokenRefreshResponse SignIns::begin(const std::string& userId, Date now)
{
    const auto deviceId = newId();
    const auto signInId = newId();
    m_database.execute("INSERT INTO devices (id, user_id, device_name, platform, created_at, updated_at) "
                       "VALUES (?, ?, ?, ?, ?, ?)",
        deviceId, userId, "New device", "macos", now, now);
    m_database.execute("INSERT INTO sign_ins (id, user_id, device_id, created_at) VALUES (?, ?, ?, ?)", signInId,
        userId, deviceId, now);
    TokenRefreshResponse pair{.accessToken = randomToken(), .refreshToken = randomToken()};
    store(signInId, pair, now);
    return pair;
}

void SignIns::store(const std::string& signInId, const TokenRefreshResponse& pair, Date now)
{
    m_database.execute("INSERT INTO access_tokens (digest, sign_in_id, expires_at) VALUES (?, ?, ?)",
        digestOf(pair.accessToken), signInId, now + accessLifetime);
    m_database.execute("INSERT INTO refresh_tokens (digest, sign_in_id, expires_at) VALUES (?, ?, ?)",
        digestOf(pair.refreshToken), signInId, now + refreshLifetime);
}

std::optional<Account> SignIns::accountOf(const std::string& accessToken, Date now)
{
    return m_database.first<Account>(
        "SELECT users.id AS user_id, users.time_zone, users.language, sign_ins.id AS sign_in_id, sign_ins.device_id "
        "FROM access_tokens JOIN sign_ins ON sign_ins.id = access_tokens.sign_in_id "
        "JOIN users ON users.id = sign_ins.user_id WHERE access_tokens.digest = ? AND access_tokens.expires_at > ?",
        digestOf(accessToken), now);
}

bool SignIns::wasRotated(const std::string& digest)
{
    return m_database.number(
               "SELECT COUNT(*) FROM refresh_tokens WHERE digest = ? AND rotated_at IS NOT NULL", digest) > 0;
}

std::expected<TokenRefreshResponse, SignIns::Refusal> SignIns::refresh(const std::string& refreshToken, Date now)
{
    const auto digest = digestOf(refreshToken);
    const auto stored = m_database.first<StoredRefreshToken>(
        "SELECT sign_in_id, rotated_at, rotation_salt FROM refresh_tokens WHERE digest = ? AND expires_at > ?", digest,
        now);
    if (!stored)
        return std::unexpected{Refusal::unknown};
    if (!stored->rotatedAt) {
        const auto salt = randomToken();
        auto pair = successorsOf(refreshToken, salt);
        m_database.execute(
            "UPDATE refresh_tokens SET rotated_at = ?, rotation_salt = ? WHERE digest = ?", now, salt, digest);
        store(stored->signInId, pair, now);
        return pair;
    }
    auto pair = successorsOf(refreshToken, stored->rotationSalt.value_or(""));
    const bool isRecent = now - *stored->rotatedAt <= repetitionPeriod;
    if (isRecent && !wasRotated(digestOf(pair.refreshToken)))
        return pair;
    m_database.execute("DELETE FROM sign_ins WHERE id = ?", stored->signInId);
    return std::unexpected{Refusal::reused};
}

} // namespace stillgate::server
