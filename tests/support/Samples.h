#pragma once

#include "Models/Account.h"
#include "Models/Session.h"
#include "Models/Sharing.h"

namespace stillgate::test
{

/// An enabled rule with policy "flexible".
BlockRule rule(std::string id, std::optional<std::string> category, std::vector<std::string> domains = {});

/// Apps of this platform, by their identifiers.
AppsByPlatform apps(const std::vector<std::string>& bundleIds);

GuardianBlockRule guardianRule(std::optional<std::string> category, std::optional<std::vector<std::string>> domains);

/// A connection in which the signed-in user is controlled.
SharingConnection controlledConnection(std::optional<std::string> flexibilityMode);

SGDevice device(std::string id, std::string platform);
SGTask task(std::string id, std::string title);
BlockSchedule schedule(std::string name, bool enabled);

/// A guardian's rule about this site, in force.
EffectiveRulesResponse guarded(std::string domain);

/// A code that is good for a minute, to be asked about every five seconds.
DeviceCodeResponse deviceCode(std::string name);

} // namespace stillgate::test
