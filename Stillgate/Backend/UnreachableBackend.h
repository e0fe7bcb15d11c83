#pragma once

#include "Backend/Backend.h"
#include "Backend/SessionTokens.h"

namespace stillgate
{

/// No backend: the stored session is kept, and every call fails as if the network were down, so that the program
/// works from its cache.
class UnreachableBackend final : public Backend
{
public:
    explicit UnreachableBackend(KeychainService& store);

    void loadTokens() override { m_tokens.load(); }

    void clearTokens() override { m_tokens.clear(); }

    [[nodiscard]] bool isAuthenticated() const override { return m_tokens.access().has_value(); }

    [[nodiscard]] Task<Result<AppConfig>> getAppConfig() override;
    [[nodiscard]] Task<Result<Streak>> getStreak(CancellationToken token) override;
    [[nodiscard]] Task<Result<std::vector<BlockRule>>> getBlockRules(CancellationToken token) override;
    [[nodiscard]] Task<Result<std::vector<SGDevice>>> getDevices(CancellationToken token) override;
    [[nodiscard]] Task<Result<std::vector<BlockSchedule>>> getSchedules(CancellationToken token) override;
    [[nodiscard]] Task<Result<std::vector<SGTask>>> getTasks(
        std::optional<std::string> role, CancellationToken token) override;
    [[nodiscard]] Task<Result<ScreenTimeBudget>> getScreenTimeBudget(CancellationToken token) override;
    [[nodiscard]] Task<Result<SGUser>> getMe(CancellationToken token) override;
    [[nodiscard]] Task<Result<SharingCode>> getMySharingCode(CancellationToken token) override;
    [[nodiscard]] Task<Result<std::vector<SharingConnection>>> getSharingConnections(CancellationToken token) override;
    [[nodiscard]] Task<Result<EffectiveRulesResponse>> getEffectiveRules(CancellationToken token) override;
    [[nodiscard]] Task<Result<void>> sendHeartbeat(std::string deviceId, std::int64_t blockedAttempts) override;
    [[nodiscard]] Task<Result<void>> reportUsage(std::int64_t usedMinutes) override;

private:
    SessionTokens m_tokens;
};

} // namespace stillgate
