#pragma once

#include "Models/BlockRules.h"

#include <vector>

namespace stillgate::test
{
class Stage;
}

namespace stillgate
{

/// Rules of several categories and policies, each with domains of its own.
[[nodiscard]] std::vector<BlockRule> mixedRules(int count);

/// What a family has after some years: 50 rules and 50 tasks, a month of screen time, 20 devices and schedules.
void putContent(test::Stage& stage);

} // namespace stillgate
