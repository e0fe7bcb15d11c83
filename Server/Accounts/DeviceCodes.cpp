#include "Accounts/DeviceCodes.h"

#include "Accounts/Secrets.h"
#include "Accounts/SignIns.h"
#include "Accounts/Users.h"

namespace stillgate::server
{

namespace
{

constexpr int userCodeLength = 8; // 31 to the 8th codes, of which a few wait at a time

struct StoredCode
{
    std::string status;
    std::optional<std::string> userId;

    STILLGATE_RECORD(StoredCode, status, userId);
};

/// "ABCD-EFGH", for people.
std::string readable(std::string code)
{
    code.insert(userCodeLength / 2, "-");
    return code;
}

} // namespace

DeviceCodeResponse DeviceCodes::request(const std::string& address, const std::string& approvalPage, Date now)
{
    const auto deviceCode = randomToken();
    const auto userCode = randomCode(userCodeLength);
    m_database.execute("INSERT INTO device_codes (digest, user_code, status, address, created_at, expires_at) "
                       "VALUES (?, ?, 'pending', ?, ?, ?)",
        digestOf(deviceCode), userCode, address, now, now + lifetime);
    return {.deviceCode = deviceCode,
        .userCode = readable(userCode),
        .verificationUrl = approvalPage,
        .verificationUrlComplete = approvalPage + "?user_code=" + readable(userCode),
        .expiresIn = std::chrono::seconds{lifetime}.count(),
        .interval = pollInterval};
}

std::optional<DeviceCodePollResponse> DeviceCodes::poll(const std::string& deviceCode, Date now)
{
    const auto digest = digestOf(deviceCode);
    const auto code = m_database.first<StoredCode>(
        "SELECT status, user_id FROM device_codes WHERE digest = ? AND expires_at > ?", digest, now);
    if (!code)
        return std::nullopt;
    if (code->status != "approved" || !code->userId)
        return DeviceCodePollResponse{.status = code->status};
    m_database.execute("DELETE FROM device_codes WHERE digest = ?", digest);
    const auto pair = SignIns{m_database}.begin(*code->userId, now);
    return DeviceCodePollResponse{.status = code->status,
        .accessToken = pair.accessToken,
        .refreshToken = pair.refreshToken,
        .user = userById(m_database, *code->userId)};
}

std::optional<WaitingDevice> DeviceCodes::waiting(const std::string& userCode, Date now)
{
    auto device = m_database.first<WaitingDevice>("SELECT user_code, address, created_at FROM device_codes "
                                                  "WHERE user_code = ? AND status = 'pending' AND expires_at > ?",
        typedCode(userCode), now);
    if (device)
        device->userCode = readable(device->userCode);
    return device;
}

bool DeviceCodes::decide(const std::string& userCode, const std::string& userId, bool isApproved, Date now)
{
    return m_database.execute("UPDATE device_codes SET status = ?, user_id = ? "
                              "WHERE user_code = ? AND status = 'pending' AND expires_at > ?",
               isApproved ? "approved" : "denied", userId, typedCode(userCode), now) > 0;
}

} // namespace stillgate::server
