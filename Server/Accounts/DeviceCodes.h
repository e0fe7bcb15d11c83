#pragma once

#include "Database/Database.h"
#include "Models/Session.h"

#include <optional>
#include <string>

namespace stillgate::server
{

/// What the approval page shows of a device that waits to be let in.
struct WaitingDevice
{
    std::string userCode;
    std::string address;
    Date createdAt;

    STILLGATE_RECORD(WaitingDevice, userCode, address, createdAt);
};

/// Signing in a device without a password on it (as RFC 8628 tells): the device shows a short user code and polls with
/// a long device code, until somebody who is signed in on the web site has approved or denied.
class DeviceCodes
{
public:
    explicit DeviceCodes(Database& database)
        : m_database(database)
    {}

    /// `approvalPage` is the address of the page that takes the user code.
    DeviceCodeResponse request(const std::string& address, const std::string& approvalPage, Date now);

    /// What became of the code; nothing if it is unknown, expired or was used. Approval is told once, with the tokens.
    std::optional<DeviceCodePollResponse> poll(const std::string& deviceCode, Date now);

    [[nodiscard]] std::optional<WaitingDevice> waiting(const std::string& userCode, Date now);

    /// False if nothing waits for this code any more.
    bool decide(const std::string& userCode, const std::string& userId, bool isApproved, Date now);

    static constexpr std::chrono::minutes lifetime{10};
    static constexpr std::int64_t pollInterval = 5; ///< seconds

private:
    Database& m_database;
};

} // namespace stillgate::server
