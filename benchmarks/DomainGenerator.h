#pragma once

#include "Models/BlockRules.h"

#include <random>
#include <string>
#include <vector>

namespace stillgate
{

/// Made-up domains of everyday length, no two alike, in no order; the same ones in every run.
class DomainGenerator
{
public:
    [[nodiscard]] std::string next();
    [[nodiscard]] std::vector<std::string> take(std::size_t count);

private:
    std::mt19937 m_random{2001};
    std::size_t m_count = 0;
};

/// An enabled rule with domains of its own.
[[nodiscard]] BlockRule customRule(std::string id, std::vector<std::string> domains);

/// The application's cache with so many rules, each of which has five domains and everything else that it may have.
[[nodiscard]] std::string largeCache(int rules);

} // namespace stillgate
