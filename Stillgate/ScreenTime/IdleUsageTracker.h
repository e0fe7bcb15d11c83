#pragma once

#include "ScreenTime/UsageTracker.h"

namespace stillgate
{

/// Meters nothing: for a machine without a desktop.
class IdleUsageTracker final : public UsageTracker
{
public:
    void startTracking() override {}

    void stopTracking() override {}

    [[nodiscard]] std::int64_t todayTotal() const override { return 0; }

    [[nodiscard]] Task<> reportToBackend() override;
};

} // namespace stillgate
