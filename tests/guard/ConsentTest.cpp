#include "Guard/Consent.h"

#include <gtest/gtest.h>

namespace stillgate::guard
{

namespace
{

constexpr auto none = Force::none;
constexpr auto flexible = Force::flexible;
constexpr auto permanent = Force::permanent;

} // namespace

TEST(Consent, moreIsFreeAndLessCostsWhatItWasAppliedWith)
{
    struct Case
    {
        Force standing;
        Force wanted;
        bool dropsNames;
        Consent needed;
    };

    const Case cases[] = {
        {none, flexible, false, Consent::block},
        {none, permanent, false, Consent::block},
        {none, none, false, Consent::unblock},
        {flexible, flexible, false, Consent::block},
        {flexible, flexible, true, Consent::unblock},
        {flexible, permanent, false, Consent::block},
        {flexible, permanent, true, Consent::unblock},
        {flexible, none, true, Consent::unblock},
        {permanent, permanent, false, Consent::block},
        {permanent, permanent, true, Consent::unblock},
        {permanent, flexible, false, Consent::unblockPermanent},
        {permanent, flexible, true, Consent::unblockPermanent},
        {permanent, none, true, Consent::unblockPermanent},
        {permanent, none, false, Consent::unblockPermanent},
    };
    for (const auto& [standing, wanted, dropsNames, needed] : cases)
        EXPECT_EQ(neededConsent(standing, wanted, dropsNames), needed)
            << int(standing) << " to " << int(wanted) << (dropsNames ? " with fewer names" : "");
}

} // namespace stillgate::guard
